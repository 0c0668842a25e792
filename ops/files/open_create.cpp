// "create", "pCreate", "open", "pOpen": the operations that give the caller an ncid.
// File names go to netCDF-C as given, paths and remote URLs alike.
#include <netcdf.h>

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <string>

#include "convert/outputs.hpp"
#include "convert/scalars.hpp"
#include "convert/text.hpp"
#include "gateway/errors.hpp"
#include "gateway/registry.hpp"
#include "gateway/status.hpp"
#include "ops/files/file_mode.hpp"
#include "ops/files/files.hpp"
#include "ops/remote/zarr_codecs.hpp"
#include "ops/files/open_guards.hpp"

namespace {

// Create failures carry no netCDF detail; only an existing file under "noclobber" has
// its own error, and only for "create".
void checkCreateStatus(int status, bool overwriteHasOwnError, const OperationRow& row) {
  if (status < 0) {
    if (overwriteHasOwnError && status == NC_EEXIST) {
      qvErrMsgId(QUARNA::imagesci::netcdf::fileOverwriteErr());
    }
    qvErrMsgId(QUARNA::imagesci::netcdf::fileCreateErr());
  }
  checkStatus(status, row);
}

}  // namespace

// netCDF-C 4.9.0 crashes on two modes instead of failing: creating a file in a
// user-defined format (NC_UDF0, NC_UDF1) that nobody registered dereferences a null
// dispatch table, and opening a path with NC_INMEMORY reads a memory image that was never
// given. Both get the status netCDF-C should have returned; 0 for every other mode.
int statusOfUnsafeMode(int mode, bool creating) {
  if (creating) {
    for (const int format : {NC_UDF0, NC_UDF1}) {
      NC_Dispatch* table = nullptr;
      if ((mode & format) != 0 &&
          (nc_inq_user_format(format, &table, nullptr) != NC_NOERR || table == nullptr)) {
        return NC_ENOTBUILT;
      }
    }
    return NC_NOERR;
  }
  return (mode & NC_INMEMORY) != 0 ? NC_EINVAL : NC_NOERR;
}

// Whether a file this library keeps open is the file at path. HDF5 refuses to truncate a
// file it has open (EACCES), but a classic-format create truncates it underneath netCDF-C,
// which then reads garbage when it closes that file and crashes the host.
bool isOpenHere(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) return false;
  for (const int ncid : OpenFileRegistry::ids()) {
    std::size_t length = 0;
    if (nc_inq_path(ncid, &length, nullptr) != NC_NOERR) continue;
    std::string openPath(length, '\0');
    if (nc_inq_path(ncid, nullptr, openPath.data()) != NC_NOERR) continue;
    if (std::filesystem::equivalent(path, openPath, error)) return true;
  }
  return false;
}

namespace {

int createFile(const std::string& path, int mode, std::size_t initialSize, std::size_t* chunkSize,
               int* ncid) {
  if (const int refused = statusOfUnsafeMode(mode, true)) return refused;
  // Under "noclobber" netCDF-C itself answers that the file exists.
  if ((mode & NC_NOCLOBBER) == 0 && isOpenHere(path)) return EACCES;
  return chunkSize == nullptr ? nc_create(path.c_str(), mode, ncid)
                              : nc__create(path.c_str(), mode, initialSize, chunkSize, ncid);
}

int openFile(const std::string& path, int mode, std::size_t* chunkSize, int* ncid) {
  if (const int refused = statusOfUnsafeMode(mode, false)) return refused;
  if (const int refused = ZarrCodecs::statusOfForeignWrite(path, mode)) return refused;
  const Dap4DebugFilter quiet(asksForDap4(path));
  return chunkSize == nullptr ? nc_open(path.c_str(), mode, ncid)
                              : nc__open(path.c_str(), mode, chunkSize, ncid);
}

struct FileArguments {
  std::string path;
  int mode;
  int ncid = -1;
};

FileArguments fileArguments(const qvArray* const* inputs) {
  return {getFileName(inputs[0], "file"), getFileMode(inputs[1])};
}
}  // namespace

NETCDFLIB_HANDLER(handleCreate) {
  auto [path, mode, ncid] = fileArguments(inputs);
  checkCreateStatus(createFile(path, mode, 0, nullptr, &ncid), true, row);
  OpenFileRegistry::add(ncid);
  RemoteFiles::noteOpened(ncid, path);
  plhs[0] = makeDoubleScalar(ncid);
}

NETCDFLIB_HANDLER(handlePCreate) {
  auto [path, mode, ncid] = fileArguments(inputs);
  const auto initialSize = getScalar<std::size_t>(inputs[2], "initialsize");
  auto chunkSize = getScalar<std::size_t>(inputs[3], "chunksize");
  checkCreateStatus(createFile(path, mode, initialSize, &chunkSize, &ncid), false, row);
  // Deliberately not registered: unload leaves such files alone.
  RemoteFiles::noteOpened(ncid, path);
  plhs[0] = makeDoubleScalar(static_cast<double>(chunkSize));
  plhs[1] = makeDoubleScalar(ncid);
}

NETCDFLIB_HANDLER(handleOpen) {
  auto [path, mode, ncid] = fileArguments(inputs);
  checkStatus(openFile(path, mode, nullptr, &ncid), row);
  OpenFileRegistry::add(ncid);
  RemoteFiles::noteOpened(ncid, path);
  plhs[0] = makeDoubleScalar(ncid);
}

NETCDFLIB_HANDLER(handlePOpen) {
  auto [path, mode, ncid] = fileArguments(inputs);
  auto chunkSize = getScalar<std::size_t>(inputs[2], "chunksizehint");
  const int status = openFile(path, mode, &chunkSize, &ncid);
  // A positive status (a system error number) passes without an error here.
  if (status < 0) checkStatus(status, row);
  OpenFileRegistry::add(ncid);
  RemoteFiles::noteOpened(ncid, path);
  plhs[0] = makeDoubleScalar(static_cast<double>(chunkSize));
  plhs[1] = makeDoubleScalar(ncid);
}
