#include "ops/remote/remote_files.hpp"

#include <netcdf.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <string>

namespace {

// netCDF-C keeps a file's index in the high half of every id of its groups.
constexpr int kGroupBits = 0xffff;

// Keyed by the id of the root group.
std::map<int, RemoteFiles::Entry> openFiles;

int rootOf(int ncid) { return ncid & ~kGroupBits; }

void writeAll(int fd, const char* data, std::size_t size) noexcept {
  while (size > 0) {
    const ssize_t written = ::write(fd, data, size);
    if (written <= 0) return;
    data += written;
    size -= static_cast<std::size_t>(written);
  }
}

// "checksumhack=" and digits, a whole line.
bool isDebugLine(std::string_view line) {
  constexpr std::string_view kPrefix = "checksumhack=";
  if (!line.starts_with(kPrefix) || !line.ends_with('\n')) return false;
  const std::string_view digits = line.substr(kPrefix.size(), line.size() - kPrefix.size() - 1);
  return !digits.empty() && digits.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

namespace RemoteFiles {

void noteOpened(int ncid, const std::string& path) {
  openFiles.erase(rootOf(ncid));
  int format = 0;
  // Only URLs reach a remote dispatch; a local path costs no inquiry.
  if (path.find(':') == std::string::npos ||
      nc_inq_format_extended(ncid, &format, nullptr) != NC_NOERR ||
      (format != NC_FORMATX_NCZARR && format != NC_FORMATX_DAP4)) {
    return;
  }
  Entry& entry = openFiles[rootOf(ncid)];
  entry.format = format;
  if (format == NC_FORMATX_NCZARR) entry.directory = fileUrlPath(path);
}

void noteClosed(int ncid) noexcept { openFiles.erase(rootOf(ncid)); }

bool anyOpen() noexcept { return !openFiles.empty(); }

Entry* find(int ncid) noexcept {
  const auto found = openFiles.find(rootOf(ncid));
  return found == openFiles.end() ? nullptr : &found->second;
}

std::string fileUrlPath(std::string_view url) {
  constexpr std::string_view kScheme = "file://";
  if (!url.starts_with(kScheme)) return {};
  url.remove_prefix(kScheme.size());
  url = url.substr(0, url.find_first_of("?#"));
  std::string path;
  for (std::size_t i = 0; i < url.size(); ++i) {
    const auto hex = [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; };
    if (url[i] == '%' && i + 2 < url.size() && hex(url[i + 1]) && hex(url[i + 2])) {
      path += static_cast<char>(std::stoi(std::string(url.substr(i + 1, 2)), nullptr, 16));
      i += 2;
    } else {
      path += url[i];
    }
  }
  return path;
}

}  // namespace RemoteFiles

bool isDap4(int ncid) noexcept {
  if (!RemoteFiles::anyOpen()) return false;
  const RemoteFiles::Entry* entry = RemoteFiles::find(ncid);
  return entry != nullptr && entry->format == NC_FORMATX_DAP4;
}

// netCDF-C takes DAP4 from the scheme (dap4://) or a fragment or query key naming it.
bool asksForDap4(std::string_view path) noexcept {
  return path.find("dap4") != std::string_view::npos && path.find(':') != std::string_view::npos;
}

Dap4DebugFilter::Dap4DebugFilter(bool active) noexcept {
  if (!active) return;
  std::fflush(stderr);
  capture_ = memfd_create("netcdf-stderr", MFD_CLOEXEC);
  if (capture_ < 0) return;
  saved_ = dup(STDERR_FILENO);
  if (saved_ < 0 || dup2(capture_, STDERR_FILENO) < 0) {
    // Unfiltered rather than lost.
    if (saved_ >= 0) close(saved_);
    close(capture_);
    saved_ = capture_ = -1;
  }
}

Dap4DebugFilter::~Dap4DebugFilter() {
  if (capture_ < 0) return;
  std::fflush(stderr);
  dup2(saved_, STDERR_FILENO);
  close(saved_);
  const off_t size = lseek(capture_, 0, SEEK_CUR);
  try {
    filterInto(STDERR_FILENO, size);
  } catch (...) {
    // Out of memory for the copy: the buffered text is dropped, the call goes on.
  }
  close(capture_);
}

void Dap4DebugFilter::filterInto(int fd, off_t size) const {
  if (size > 0) {
    std::string text(static_cast<std::size_t>(size), '\0');
    if (pread(capture_, text.data(), text.size(), 0) == size) {
      std::string kept;
      kept.reserve(text.size());
      for (std::size_t start = 0; start < text.size();) {
        std::size_t end = text.find('\n', start);
        end = end == std::string::npos ? text.size() : end + 1;
        const std::string_view line(text.data() + start, end - start);
        if (!isDebugLine(line)) kept += line;
        start = end;
      }
      writeAll(fd, kept.data(), kept.size());
    }
  }
}
