#include "gateway/registry.hpp"

#include <netcdf.h>

#include <map>
#include <set>

#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "gateway/row_shapes.hpp"
#include "gateway/status.hpp"
#include "qvhost/msgid.hpp"

namespace {
struct OpenFile {
  bool inMemory = false;
  OpenFileRegistry::FileImage image;
};
// Live from load to unload; the host calls QNTerminate before destroying them.
std::map<int, OpenFile> openFiles;
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

void add(int ncid) { openFiles.try_emplace(ncid); }

void addInMemory(int ncid, FileImage image) {
  openFiles.insert_or_assign(ncid, OpenFile{true, std::move(image)});
}

void remove(int ncid) {
  const auto it = openFiles.find(ncid);
  if (it == openFiles.end()) return;
  // An image netCDF-C may still read (its file failed to close) is left to it.
  int format = 0;
  if (it->second.image != nullptr && nc_inq_format(ncid, &format) == NC_NOERR) {
    static_cast<void>(it->second.image.release());
  }
  openFiles.erase(it);
}

bool contains(int ncid) { return openFiles.contains(ncid); }

bool isInMemory(int ncid) {
  const auto it = openFiles.find(ncid);
  return it != openFiles.end() && it->second.inMemory;
}

const std::byte* imageOf(int ncid) {
  const auto it = openFiles.find(ncid);
  return it != openFiles.end() ? it->second.image.get() : nullptr;
}

void release(int ncid) {
  if (const auto it = openFiles.find(filePart(ncid) << 16); it != openFiles.end()) {
    // netCDF-C may still read the image of a half-released file; it is left to it.
    static_cast<void>(it->second.image.release());
    openFiles.erase(it);
  }
  releasedFiles.insert(filePart(ncid));
}

void refuseReleasedIds(const OperationRow& row, int nInputs, const qvArray* const* inputs) {
  for (const int k : idInputs(row)) {
    if (k < nInputs && isReleased(inputs[k])) checkStatus(NC_EBADID, row);
  }
}

std::vector<int> ids() {
  std::vector<int> result;
  result.reserve(openFiles.size());
  for (const auto& entry : openFiles) result.push_back(entry.first);
  return result;
}

void closeAll() noexcept {
  if (openFiles.empty()) {
    return;
  }
  try {
    qvWarningMsgId(QUARNA::imagesci::netcdf::closingFileHandle());
  } catch (...) {
    // Unload goes on whatever the host's warning machinery does: the files must close.
  }
  for (auto& [ncid, file] : openFiles) {
    // Nothing to report to at unload, and one failure must not keep the others open. A
    // file netCDF-C refuses to close (netCDF-4 after some failed definitions) is aborted,
    // which still releases it.
    // An id netCDF-C no longer knows (its file was closed through a group id) holds
    // nothing netCDF-C reads.
    const int status = nc_close(ncid);
    if (status == NC_NOERR || status == NC_EBADID || nc_abort(ncid) == NC_NOERR) {
      file.image.reset();
    } else {
      static_cast<void>(file.image.release());
    }
  }
}

}  // namespace OpenFileRegistry
