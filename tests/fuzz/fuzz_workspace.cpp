#include "fuzz_workspace.hpp"

#include <arpa/inet.h>
#include <netcdf.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <string_view>

#include "gateway/registry.hpp"

namespace fuzz {

namespace {

constexpr std::size_t kPoolLimit = 32;
constexpr std::size_t kOutputLimit = 24;
// netCDF-C numbers open files as (slot << 16); an input opens far fewer than this.
constexpr int kSlotsSwept = 512;

std::filesystem::path makePrivateRoot() {
  const char* tmp = std::getenv("TMPDIR");
  std::string pattern = (std::filesystem::path(tmp != nullptr && *tmp != '\0' ? tmp : "/tmp") /
                         "netcdflib-fuzz-XXXXXX")
                            .string();
  if (mkdtemp(pattern.data()) == nullptr) {
    std::perror("netcdflib_fuzzer: mkdtemp");
    std::abort();
  }
  return pattern;
}

// A port nothing listens on: bound by us, then released.
std::string closedPortUrl() {
  int port = 9;
  const int fd = socket(AF_INET, SOCK_STREAM, 0);
  if (fd >= 0) {
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t len = sizeof addr;
    if (bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0 &&
        getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &len) == 0) {
      port = ntohs(addr.sin_port);
    }
    close(fd);
  }
  return "http://127.0.0.1:" + std::to_string(port) + "/nothing.nc";
}

void toPool(CallHistory& history, Pool pool, const qvArray* a) {
  if (a == nullptr || qvGetClassID(a) != qvDOUBLE_CLASS || qvIsComplex(a)) return;
  auto& ids = history.pool(pool);
  const auto* values = static_cast<const double*>(qvGetData(a));
  for (std::size_t i = 0; i < qvGetNumberOfElements(a) && ids.size() < kPoolLimit; ++i) {
    ids.push_back(values[i]);
  }
}

bool isScalarDouble(const qvArray* a) {
  return a != nullptr && qvGetClassID(a) == qvDOUBLE_CLASS && qvGetNumberOfElements(a) == 1;
}

}  // namespace

Workspace& Workspace::instance() {
  static Workspace workspace;
  return workspace;
}

Workspace::Workspace() : root_(makePrivateRoot()), work_(root_ / "work") {
  std::filesystem::create_directories(work_);
  fixtures_ = makeFixtures(root_ / "fixtures");
  closedPortUrl_ = closedPortUrl();
  nc_get_chunk_cache(&defaultCacheSize_, &defaultCacheElements_, &defaultCachePreemption_);
}

Workspace::~Workspace() {
  std::error_code ignored;
  std::filesystem::remove_all(root_, ignored);
}

void Workspace::materialize(const std::string& word, const std::filesystem::path& path) {
  if (std::filesystem::exists(path)) return;
  if (word == "#dir") {
    std::filesystem::create_directories(path);
    return;
  }
  const auto it = fixtures_.find(word);
  if (it == fixtures_.end()) return;  // "#missing": stays absent
  std::ofstream out(path, std::ios::binary);
  out.write(it->second.data(), static_cast<std::streamsize>(it->second.size()));
}

qvArrayPtr Workspace::fileArgument(const std::u16string& text) {
  std::string path;
  if (text == u"#url") {
    path = closedPortUrl_;
  } else if (!text.empty() && text[0] == u'#' && text.size() < 16 &&
             (fixtures_.contains(std::string(text.begin(), text.end())) || text == u"#dir" ||
              text == u"#missing")) {
    const std::string word(text.begin(), text.end());
    const std::filesystem::path file = work_ / (word.substr(1) + (word == "#dir" ? "" : ".nc"));
    materialize(word, file);
    path = file.string();
  } else {
    // Anything else names a file directly inside the work directory: no separators, and
    // a leading letter so that "." and ".." stay plain names.
    std::u16string units = text;
    for (char16_t& u : units) {
      if (u == u'/') u = u'_';
    }
    const std::string prefix = (work_ / "f").string();
    std::u16string full(prefix.begin(), prefix.end());
    full += units;
    return matrix::create(full.data(), full.size());
  }
  return matrix::create(path.data(), path.size());
}

std::size_t Workspace::endInput(const CallHistory& history) {
  std::set<int> ids;
  for (const double id : history.pool(Pool::Ncid)) {
    if (std::isfinite(id) && std::fabs(id) < 2147483647.0) ids.insert(static_cast<int>(id));
  }
  for (const int id : OpenFileRegistry::ids()) ids.insert(id);
  for (const int id : ids) {
    // netCDF-C 4.9.0 cannot close a netCDF-4 file after some failed definitions (an
    // attribute of an invalid type, say); aborting still releases it.
    if (nc_close(id) != NC_NOERR) nc_abort(id);
    OpenFileRegistry::remove(id);
  }
  // Whatever is still open was opened by a call whose id never came back.
  std::size_t strays = 0;
  for (int slot = 1; slot < kSlotsSwept; ++slot) {
    int format = 0;
    if (nc_inq_format(slot << 16, &format) == NC_NOERR) {
      ++strays;
      if (nc_close(slot << 16) != NC_NOERR) nc_abort(slot << 16);
    }
  }
  nc_set_default_format(NC_FORMAT_CLASSIC, nullptr);
  nc_set_chunk_cache(defaultCacheSize_, defaultCacheElements_, defaultCachePreemption_);
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(work_, ignored)) {
    std::filesystem::remove_all(entry.path(), ignored);
  }
  return strays;
}

std::size_t Workspace::openDescriptors() const {
  std::size_t n = 0;
  std::error_code ignored;
  const std::string root = root_.string();
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", ignored)) {
    const auto target = std::filesystem::read_symlink(entry.path(), ignored);
    if (target.string().starts_with(root)) ++n;
  }
  return n;
}

void harvest(const OperationRow& row, const qvArrayPtr* outputs, std::size_t n,
             CallHistory& history) {
  const std::string_view name = row.name;
  auto out = [&](std::size_t i) { return i < n ? outputs[i].get() : nullptr; };
  if (name == "create" || name == "open" || name == "defGrp" || name == "inqNcid" ||
      name == "inqGrpParent" || name == "inqGrps" || name == "openMem" || name == "createMem") {
    toPool(history, Pool::Ncid, out(0));
  } else if (name == "pCreate" || name == "pOpen") {
    toPool(history, Pool::Ncid, out(1));
  } else if (name == "defVar" || name == "inqVarID" || name == "inqVarIDs") {
    toPool(history, Pool::Varid, out(0));
  } else if (name == "defDim" || name == "inqDimID" || name == "inqDimIDs" ||
             name == "inqUnlimDims") {
    toPool(history, Pool::Dimid, out(0));
  } else if (name == "inqVar") {
    toPool(history, Pool::Typeid, out(1));
    toPool(history, Pool::Dimid, out(2));
  } else if (name == "defVlen" || name == "inqAtt" || name == "defEnum" ||
             name == "defCompound" || name == "defOpaque") {
    toPool(history, Pool::Typeid, out(0));
  } else if (name == "inqVlen" || name == "inqUserType") {
    toPool(history, Pool::Typeid, out(2));
  } else if (name == "inqAttID") {
    toPool(history, Pool::Attnum, out(0));
  }
  for (std::size_t i = 0; i < n; ++i) {
    if (isScalarDouble(out(i))) toPool(history, Pool::Number, out(i));
    if (out(i) != nullptr && history.outputs.size() < kOutputLimit) {
      history.outputs.push_back(qvShareArray(out(i)));
    }
  }
}

}  // namespace fuzz
