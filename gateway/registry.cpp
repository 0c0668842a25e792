#include "gateway/registry.hpp"

#include <netcdf.h>

#include <set>

#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "gateway/row_shapes.hpp"
#include "gateway/status.hpp"
#include "qvhost/msgid.hpp"

namespace {
// Live from load to unload; the host calls QNTerminate before destroying them.
std::set<int> openFiles;
// Files of released ids, by netCDF-C's file part of an id (its bits above the group's).
std::set<int> releasedFiles;

int filePart(int ncid) { return ncid >> 16; }

bool isReleased(const qvArray* id) {
  if (releasedFiles.empty() || !qvIsNumeric(id) || qvIsComplex(id) ||
      qvGetNumberOfElements(id) != 1) {
    return false;
  }
  try {
    return releasedFiles.contains(filePart(getScalar<int>(id, "ncid")));
  } catch (...) {
    // Not an id at all: the handler reports it under the argument's own name.
    return false;
  }
}
}  // namespace

namespace OpenFileRegistry {

void add(int ncid) { openFiles.insert(ncid); }

void remove(int ncid) { openFiles.erase(ncid); }

bool contains(int ncid) { return openFiles.contains(ncid); }

void release(int ncid) {
  openFiles.erase(filePart(ncid) << 16);
  releasedFiles.insert(filePart(ncid));
}

void refuseReleasedIds(const OperationRow& row, int nInputs, const qvArray* const* inputs) {
  for (const int k : idInputs(row)) {
    if (k < nInputs && isReleased(inputs[k])) checkStatus(NC_EBADID, row);
  }
}

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
