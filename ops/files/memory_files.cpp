// Files held in memory: opened from bytes the caller gives, created without a disk file,
// and closed into bytes the caller gets back.
#include <netcdf.h>
#include <netcdf_mem.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <string>

#include "convert/filter_args.hpp"
#include "convert/outputs.hpp"
#include "convert/scalars.hpp"
#include "convert/text.hpp"
#include "gateway/registry.hpp"
#include "gateway/status.hpp"
#include "ops/files/file_mode.hpp"
#include "ops/files/files.hpp"
#include "ops/files/open_guards.hpp"

namespace {
using OpenFileRegistry::FileImage;

FileImage copyOf(std::span<const std::byte> bytes) {
  // Never null, so that netCDF-C judges an empty image by its size.
  FileImage image(static_cast<std::byte*>(std::malloc(std::max<std::size_t>(bytes.size(), 1))));
  if (image == nullptr) throw std::bad_alloc();
  if (!bytes.empty()) std::memcpy(image.get(), bytes.data(), bytes.size());
  return image;
}

// The caller's bytes are copied once. A read-only file reads that copy in place, locked,
// and the registry keeps it until the file closes. netCDF-C refuses (with a system error)
// to read a classic file shorter than the first block it reads from locked memory, and a
// writable file needs memory it can grow: then netCDF-C takes the copy over when the open
// succeeds, and also when it fails to open a netCDF-4 image for writing, which it tells by
// clearing the pointer (it has freed the copy then).
int openFromBytes(const std::string& path, int mode, std::span<const std::byte> bytes, int* ncid) {
  FileImage image = copyOf(bytes);
  if ((mode & NC_WRITE) == 0) {
    const int status = nc_open_mem(path.c_str(), mode, bytes.size(), image.get(), ncid);
    if (status == NC_NOERR) OpenFileRegistry::addInMemory(*ncid, std::move(image));
    if (status <= 0) return status;
  }
  NC_memio memio{bytes.size(), image.get(), 0};
  const int status = nc_open_memio(path.c_str(), mode, &memio, ncid);
  if (status == NC_NOERR || memio.memory == nullptr) static_cast<void>(image.release());
  if (status != NC_NOERR) return status;
  OpenFileRegistry::addInMemory(*ncid);
  return NC_NOERR;
}

int createInMemory(const std::string& path, int mode, std::size_t initialSize, int* ncid) {
  if (const int refused = statusOfUnsafeMode(mode, true)) return refused;
  // NC_PERSIST writes the file at close, over whatever is at path.
  if ((mode & NC_PERSIST) != 0 && (mode & NC_NOCLOBBER) == 0 && isOpenHere(path)) return EACCES;
  const int status = nc_create_mem(path.c_str(), mode, initialSize, ncid);
  if (status == NC_NOERR) OpenFileRegistry::addInMemory(*ncid);
  return status;
}

// The bytes of a file this library holds in memory; the id is forgotten once closed.
qvArrayPtr closeIntoBytes(int ncid, const OperationRow& row) {
  if (!OpenFileRegistry::isInMemory(ncid)) {
    // nc_close_memio closes a disk file too and answers success with no bytes at all.
    int format = 0;
    checkStatus(nc_inq_format(ncid, &format), row);
    checkStatus(NC_EINMEMORY, row);
  }
  NC_memio memio{0, nullptr, 0};
  const int status = nc_close_memio(ncid, &memio);
  // As for "close": a failure other than an unknown id leaves netCDF-C half-released.
  if (status == NC_EBADID) OpenFileRegistry::remove(ncid);
  if (status != NC_NOERR && status != NC_EBADID) OpenFileRegistry::release(ncid);
  checkStatus(status, row);
  // Memory netCDF-C allocated is the caller's now; the registry's own image comes back
  // as it was lent (its flags are not reliable: classic files drop NC_MEMIO_LOCKED) and
  // is released with the id.
  FileImage allocated;
  if (memio.memory != OpenFileRegistry::imageOf(ncid)) {
    allocated.reset(static_cast<std::byte*>(memio.memory));
  }
  qvArrayPtr bytes = makeByteColumn({static_cast<const std::byte*>(memio.memory), memio.size});
  OpenFileRegistry::remove(ncid);
  return bytes;
}
}  // namespace

NETCDFLIB_HANDLER(handleOpenMem) {
  const std::string path = getFileName(inputs[0], "file");
  const int mode = getFileMode(inputs[1]);
  int ncid = -1;
  checkStatus(openFromBytes(path, mode, getBytes(inputs[2], "bytes"), &ncid), row);
  plhs[0] = makeDoubleScalar(ncid);
}

NETCDFLIB_HANDLER(handleCreateMem) {
  const std::string path = getFileName(inputs[0], "file");
  const int mode = getFileMode(inputs[1]);
  const auto initialSize = getScalar<std::size_t>(inputs[2], "initialsize");
  int ncid = -1;
  checkStatus(createInMemory(path, mode, initialSize, &ncid), row);
  plhs[0] = makeDoubleScalar(ncid);
}

NETCDFLIB_HANDLER(handleCloseMem) {
  plhs[0] = closeIntoBytes(getScalar<int>(inputs[0], "ncid"), row);
}
