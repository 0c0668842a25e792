// Compression filters of netCDF-4 variables: any HDF5 filter by id, and szip, bzip2 and
// Zstandard through netCDF-C's own calls.
#include <netcdf.h>
#include <netcdf_filter.h>

#include <functional>
#include <numeric>
#include <vector>

#include "convert/filter_args.hpp"
#include "convert/outputs.hpp"
#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/metadata/filter_guards.hpp"
#include "ops/metadata/metadata.hpp"
#include "ops/metadata/variable_ref.hpp"

namespace {
bool isNetcdf4(int ncid) {
  int format = 0;
  return nc_inq_format(ncid, &format) == NC_NOERR &&
         (format == NC_FORMAT_NETCDF4 || format == NC_FORMAT_NETCDF4_CLASSIC);
}

// The parameters of a filter the variable uses; NC_ENOFILTER when it has none of that id.
int filterParams(int ncid, int varid, unsigned id, std::vector<unsigned>& params) {
  std::size_t n = 0;
  if (const int status = nc_inq_var_filter_info(ncid, varid, id, &n, nullptr)) return status;
  params.assign(n, 0);
  return nc_inq_var_filter_info(ncid, varid, id, &n, params.data());
}

std::size_t elementsOf(std::span<const std::size_t> chunks) {
  return std::accumulate(chunks.begin(), chunks.end(), std::size_t{1}, std::multiplies<>());
}

// Pixels per block must be even, 2 to 32, and no more than a chunk holds. netCDF-C checks
// this only when szip is first defined: redefined, it lets 0 through (HDF5 then divides
// by zero) and odd or too large values (the file then neither closes nor aborts).
int statusOfPixelsPerBlock(int ncid, int varid, unsigned pixelsPerBlock) {
  if (pixelsPerBlock < 2 || pixelsPerBlock > NC_MAX_PIXELS_PER_BLOCK || pixelsPerBlock % 2 != 0) {
    return NC_EINVAL;
  }
  int ndims = 0, storage = 0;
  if (nc_inq_varndims(ncid, varid, &ndims) != NC_NOERR) return NC_NOERR;
  std::vector<std::size_t> chunks(static_cast<std::size_t>(ndims));
  if (nc_inq_var_chunking(ncid, varid, &storage, chunks.data()) != NC_NOERR ||
      storage != NC_CHUNKED || chunks.empty()) {
    return NC_NOERR;
  }
  return elementsOf(chunks) < pixelsPerBlock ? NC_EINVAL : NC_NOERR;
}

}  // namespace

int statusOfFilter(int ncid, int varid, unsigned id, std::span<const unsigned> params) {
  if (!isNetcdf4(ncid)) return NC_NOERR;  // netCDF-C refuses these itself
  switch (id) {
    // HDF5 cannot szip characters and fails only when the variable is created, leaving a
    // file that neither closes nor aborts; netCDF-C refuses strings the same way.
    case H5Z_FILTER_SZIP: {
      nc_type type = NC_NAT;
      if (params.size() != 2 ||
          (nc_inq_vartype(ncid, varid, &type) == NC_NOERR && type == NC_CHAR)) {
        return NC_EFILTER;
      }
      return statusOfPixelsPerBlock(ncid, varid, params[1]);
    }
    // The bzip2 plugin refuses other levels only when it compresses, at close, and the file
    // then neither closes nor aborts.
    case H5Z_FILTER_BZIP2:
      return !params.empty() && (params[0] < 1 || params[0] > 9) ? NC_EINVAL : NC_NOERR;
    // Debian's Blosc plugin fails on any chunk it cannot shrink, with the same result;
    // netCDF-C itself is built without Blosc. Files using it can still be read.
    case H5Z_FILTER_BLOSC:
      return NC_ENOFILTER;
    default:
      return NC_NOERR;
  }
}

int statusOfChunkingUnderSzip(int ncid, int varid, std::span<const std::size_t> chunks) {
  std::vector<unsigned> params;
  if (!isNetcdf4(ncid) || filterParams(ncid, varid, H5Z_FILTER_SZIP, params) != NC_NOERR ||
      params.size() < 2 || chunks.empty()) {
    return NC_NOERR;
  }
  return elementsOf(chunks) < params[1] ? NC_EINVAL : NC_NOERR;
}

NETCDFLIB_HANDLER(handleDefVarFilter) {
  const auto [ncid, varid] = variableOf(inputs);
  const unsigned id = getUnsigned32(inputs[2], "filterID");
  const std::vector<unsigned> params = getUnsigned32Row(inputs[3], "params");
  checkStatus(statusOfFilter(ncid, varid, id, params), row);
  checkStatus(nc_def_var_filter(ncid, varid, id, params.size(), params.data()), row);
}

NETCDFLIB_HANDLER(handleInqVarFilterIds) {
  const auto [ncid, varid] = variableOf(inputs);
  std::size_t n = 0;
  checkStatus(nc_inq_var_filter_ids(ncid, varid, &n, nullptr), row);
  std::vector<unsigned> ids(n);
  checkStatus(nc_inq_var_filter_ids(ncid, varid, &n, ids.data()), row);
  plhs[0] = makeUnsigned32Row(ids);
}

NETCDFLIB_HANDLER(handleInqVarFilterInfo) {
  const auto [ncid, varid] = variableOf(inputs);
  std::vector<unsigned> params;
  checkStatus(filterParams(ncid, varid, getUnsigned32(inputs[2], "filterID"), params), row);
  plhs[0] = makeUnsigned32Row(params);
}

// NC_ENOFILTER is the answer "no", not a failure.
NETCDFLIB_HANDLER(handleInqFilterAvail) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int status = nc_inq_filter_avail(ncid, getUnsigned32(inputs[1], "filterID"));
  if (status != NC_ENOFILTER) checkStatus(status, row);
  plhs[0] = makeLogicalScalar(status == NC_NOERR);
}

NETCDFLIB_HANDLER(handleDefVarSzip) {
  const auto [ncid, varid] = variableOf(inputs);
  const int mask = getScalar<int>(inputs[2], "optionsMask");
  const int pixelsPerBlock = getScalar<int>(inputs[3], "pixelsPerBlock");
  const std::vector<unsigned> params{static_cast<unsigned>(mask),
                                     static_cast<unsigned>(pixelsPerBlock)};
  checkStatus(statusOfFilter(ncid, varid, H5Z_FILTER_SZIP, params), row);
  checkStatus(nc_def_var_szip(ncid, varid, mask, pixelsPerBlock), row);
}

NETCDFLIB_HANDLER(handleInqVarSzip) {
  const auto [ncid, varid] = variableOf(inputs);
  int mask = 0, pixelsPerBlock = 0;
  checkStatus(nc_inq_var_szip(ncid, varid, &mask, &pixelsPerBlock), row);
  plhs[0] = makeDoubleScalar(mask);
  plhs[1] = makeDoubleScalar(pixelsPerBlock);
}

NETCDFLIB_HANDLER(handleDefVarBzip2) {
  const auto [ncid, varid] = variableOf(inputs);
  checkStatus(nc_def_var_bzip2(ncid, varid, getScalar<int>(inputs[2], "level")), row);
}

NETCDFLIB_HANDLER(handleInqVarBzip2) {
  const auto [ncid, varid] = variableOf(inputs);
  int hasFilter = 0, level = 0;
  checkStatus(nc_inq_var_bzip2(ncid, varid, &hasFilter, &level), row);
  plhs[0] = makeLogicalScalar(hasFilter != 0);
  plhs[1] = makeDoubleScalar(hasFilter != 0 ? level : 0);
}

// netCDF-C 4.9.0 built without Zstandard (as Debian builds it) answers nc_def_var_zstandard
// and nc_inq_var_zstandard with success and does nothing: neither reaches a caller as done.
NETCDFLIB_HANDLER(handleDefVarZstandard) {
  const auto [ncid, varid] = variableOf(inputs);
  const int level = getScalar<int>(inputs[2], "level");
  checkStatus(nc_inq_filter_avail(ncid, H5Z_FILTER_ZSTD), row);
  checkStatus(nc_def_var_zstandard(ncid, varid, level), row);
  std::vector<unsigned> params;
  const bool applied = filterParams(ncid, varid, H5Z_FILTER_ZSTD, params) == NC_NOERR &&
                       !params.empty() && static_cast<int>(params[0]) == level;
  if (!applied) checkStatus(NC_ENOFILTER, row);
}

NETCDFLIB_HANDLER(handleInqVarZstandard) {
  const auto [ncid, varid] = variableOf(inputs);
  constexpr int kUnset = -1;
  int hasFilter = kUnset, level = 0;
  checkStatus(nc_inq_var_zstandard(ncid, varid, &hasFilter, &level), row);
  if (hasFilter == kUnset) checkStatus(NC_ENOFILTER, row);
  plhs[0] = makeLogicalScalar(hasFilter != 0);
  plhs[1] = makeDoubleScalar(hasFilter != 0 ? level : 0);
}
