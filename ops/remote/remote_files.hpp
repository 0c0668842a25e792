// Files opened from URLs whose netCDF-C dispatch needs the gateway's help: NCZarr stores
// and DAP4 datasets. Each open file's kind is asked of netCDF-C once, at open; every other
// call on an ordinary file pays one test that nothing remote is open.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace RemoteFiles {

struct Entry {
  int format = 0;  // NC_FORMATX_NCZARR or NC_FORMATX_DAP4
  // A Zarr store's directory; empty for other storage.
  std::string directory;
  // (group id, variable id) -> the Zarr codecs that block the variable; empty when none do.
  std::map<std::pair<int, int>, std::string> verdicts;
};

// Records ncid when netCDF-C opened path as an NCZarr store or a DAP4 dataset; forgets any
// earlier file that had the same id otherwise.
void noteOpened(int ncid, const std::string& path);
void noteClosed(int ncid) noexcept;
bool anyOpen() noexcept;
// The entry of the file that ncid (a file or any of its groups) belongs to, or null.
Entry* find(int ncid) noexcept;

// The directory of a file-storage URL: its path without scheme, query and fragment, percent
// escapes decoded; empty for other schemes.
std::string fileUrlPath(std::string_view url);

}  // namespace RemoteFiles

// netCDF-C 4.9.0 prints a debug line "checksumhack=N" on standard error each time it
// unpacks a DAP4 response, and no setting turns that off. While one of these lives, standard
// error goes to a buffer; at the end everything else in it is passed on unchanged and in
// order. Inactive unless active is true.
class Dap4DebugFilter {
 public:
  explicit Dap4DebugFilter(bool active) noexcept;
  ~Dap4DebugFilter();
  Dap4DebugFilter(const Dap4DebugFilter&) = delete;
  Dap4DebugFilter& operator=(const Dap4DebugFilter&) = delete;

 private:
  void filterInto(int fd, off_t size) const;
  int saved_ = -1;
  int capture_ = -1;
};

// Active for reads of a DAP4 dataset and for opening a URL that asks for DAP4.
bool isDap4(int ncid) noexcept;
bool asksForDap4(std::string_view path) noexcept;
