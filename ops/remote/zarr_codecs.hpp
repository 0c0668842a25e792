// Zarr stores whose arrays carry codecs netCDF-C cannot apply. netCDF-C 4.9.0 as Debian
// builds it has no Zarr codecs: it reads a compressed chunk's bytes as if they were the
// values and writes raw chunks under metadata that names a compressor, both without an
// error. Data of such a variable is refused instead.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gateway/operation.hpp"
#include "ops/remote/remote_files.hpp"

namespace ZarrCodecs {
// Raises zarrCodecNotSupported when the variable's metadata names a codec netCDF-C does
// not report as a filter of its own. The verdict is kept per variable while the store is
// open.
void refuseUndecodable(int ncid, int varid, const OperationRow& row);
// The codec ids the array metadata file names (filters, then compressor), or nothing when
// it cannot be read or parsed.
std::optional<std::vector<std::string>> codecsOf(const std::string& zarray);
// NC_EPERM for opening for writing a directory store that netCDF-C did not write (its root
// lacks netCDF-C's _NCProperties): netCDF-C 4.9.0 rewrites every metadata object of such a
// store at close, in place without truncating and without its codecs, so that
// other Zarr readers can no longer parse it. 0 for anything else.
int statusOfForeignWrite(const std::string& path, int mode);
// NC_EBADTYPE for NC_STRING in a store: netCDF-C 4.9.0 accepts string variables and
// attributes there, then fails to close the store (which loses its attributes), and
// aborting it afterwards frees memory twice.
void refuseStrings(int ncid, int xtype, const OperationRow& row);
// NC_ENOFILTER for deflation, shuffling or checksums asked of an existing variable of a
// store: netCDF-C 4.9.0 accepts them there and stores the data without any.
void refuseFilters(int ncid, int varid, const OperationRow& row);
}  // namespace ZarrCodecs

inline void refuseUndecodableZarr(int ncid, int varid, const OperationRow& row) {
  if (RemoteFiles::anyOpen()) ZarrCodecs::refuseUndecodable(ncid, varid, row);
}

inline void refuseStringsInZarr(int ncid, int xtype, const OperationRow& row) {
  if (RemoteFiles::anyOpen()) ZarrCodecs::refuseStrings(ncid, xtype, row);
}

inline void refuseFiltersInZarr(int ncid, int varid, bool requested, const OperationRow& row) {
  if (requested && RemoteFiles::anyOpen()) ZarrCodecs::refuseFilters(ncid, varid, row);
}
