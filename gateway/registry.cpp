#include "gateway/registry.hpp"

#include <netcdf.h>

#include <set>

#include "gateway/errors.hpp"
#include "qvhost/msgid.hpp"

namespace {
// Lives from load to unload; the host calls QNTerminate before destroying it.
std::set<int> openFiles;
}  // namespace

namespace OpenFileRegistry {

void add(int ncid) { openFiles.insert(ncid); }

void remove(int ncid) { openFiles.erase(ncid); }

bool contains(int ncid) { return openFiles.contains(ncid); }

std::vector<int> ids() { return {openFiles.begin(), openFiles.end()}; }

void closeAll() noexcept {
  if (openFiles.empty()) {
    return;
  }
  try {
    qvWarningMsgId(QUARNA::imagesci::netcdf::closingFileHandle());
  } catch (...) {
    // Unload goes on whatever the host's warning machinery does: the files must close.
  }
  for (const int ncid : openFiles) {
    // Nothing to report to at unload, and one failure must not keep the others open. A
    // file netCDF-C refuses to close (netCDF-4 after some failed definitions) is aborted,
    // which still releases it.
    if (nc_close(ncid) != NC_NOERR) static_cast<void>(nc_abort(ncid));
  }
}

}  // namespace OpenFileRegistry
