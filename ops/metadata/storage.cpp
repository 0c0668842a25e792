// Chunking, compression and checksums of netCDF-4 variables.
#include <netcdf.h>

#include <algorithm>
#include <vector>

#include "convert/index.hpp"
#include "convert/outputs.hpp"
#include "convert/scalars.hpp"
#include "convert/text.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/metadata/filter_guards.hpp"
#include "ops/metadata/hdf5_names.hpp"
#include "ops/metadata/metadata.hpp"
#include "ops/remote/zarr_codecs.hpp"

namespace {
// The inquiries refuse files without netCDF-4 storage before asking about the variable.
template <class ID>
void requireNetcdf4(int ncid, const OperationRow& row) {
  int format = 0;
  checkStatus(nc_inq_format(ncid, &format), row);
  if (!isNetcdf4Format(format)) qvErrMsgId(ID());
}

struct VariableRef {
  int ncid, varid;
};

VariableRef variableOf(const qvArray* const* inputs) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  return {ncid, getScalar<int>(inputs[1], "varid")};
}
}  // namespace

void handleDefVarChunking(int, qvArrayPtr*, int, const qvArray* const* inputs,
                          const OperationRow& row) {
  const auto [ncid, varid] = variableOf(inputs);
  const int storage = getScalar<int>(inputs[2], "storage");
  // Host order in, netCDF order out.
  const std::vector<std::size_t> chunks = getChunkSizeRow(inputs[3], "chunk dims");
  if (storage == NC_CHUNKED) {
    int ndims = 0;
    checkStatus(nc_inq_varndims(ncid, varid, &ndims), row);
    if (chunks.size() != static_cast<std::size_t>(ndims)) {
      qvErrMsgId(QUARNA::imagesci::netcdf::invalidChunkParameter(chunks.size(), ndims));
    }
  } else if (storage != NC_CONTIGUOUS) {
    qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedChunkStorage());
  }
  if (storage == NC_CHUNKED) checkStatus(statusOfChunkingUnderSzip(ncid, varid, chunks), row);
  checkStatus(nc_def_var_chunking(ncid, varid, storage, chunks.empty() ? nullptr : chunks.data()),
              row);
}

void handleInqVarChunking(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                          const OperationRow& row) {
  const auto [ncid, varid] = variableOf(inputs);
  requireNetcdf4<QUARNA::imagesci::netcdf::attemptedChunkingInquiryOnNetcdf3File>(ncid, row);
  int ndims = 0;
  checkStatus(nc_inq_varndims(ncid, varid, &ndims), row);
  std::vector<std::size_t> chunks(static_cast<std::size_t>(ndims), 0);
  int storage = -1;
  checkStatus(nc_inq_var_chunking(ncid, varid, &storage, chunks.empty() ? nullptr : chunks.data()),
              row);
  if (storage == NC_CONTIGUOUS) {
    plhs[0] = makeAsciiText("contiguous");
    plhs[1] = makeEmptyDouble();
  } else if (storage == NC_CHUNKED) {
    plhs[0] = makeAsciiText("chunked");
    plhs[1] = makeHostOrderRow(chunks);
  } else {
    qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedChunkingCode(storage));
  }
}

void handleDefVarDeflate(int, qvArrayPtr*, int, const qvArray* const* inputs,
                         const OperationRow& row) {
  const auto [ncid, varid] = variableOf(inputs);
  const bool shuffle = getLogicalFlag(inputs[2], "shuffle flag");
  const bool deflate = getLogicalFlag(inputs[3], "deflate flag");
  // Without deflation the level is not looked at, whatever it is.
  const int level = deflate ? getScalar<int>(inputs[4], "deflate level") : 0;
  refuseFiltersInZarr(ncid, varid, shuffle || deflate, row);
  checkStatus(nc_def_var_deflate(ncid, varid, shuffle ? 1 : 0, deflate ? 1 : 0, level), row);
}

void handleInqVarDeflate(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                         const OperationRow& row) {
  const auto [ncid, varid] = variableOf(inputs);
  int shuffle = 0, deflate = 0, level = 0;
  checkStatus(nc_inq_var_deflate(ncid, varid, &shuffle, &deflate, &level), row);
  plhs[0] = makeLogicalScalar(shuffle == 1);
  plhs[1] = makeLogicalScalar(deflate == 1);
  plhs[2] = makeDoubleScalar(deflate == 1 ? level : 0);
}

void handleDefVarFletcher32(int, qvArrayPtr*, int, const qvArray* const* inputs,
                            const OperationRow& row) {
  const auto [ncid, varid] = variableOf(inputs);
  const int setting = getScalar<int>(inputs[2], "checksum setting");
  refuseFiltersInZarr(ncid, varid, setting != NC_NOCHECKSUM, row);
  checkStatus(nc_def_var_fletcher32(ncid, varid, setting), row);
}

void handleInqVarFletcher32(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                            const OperationRow& row) {
  const auto [ncid, varid] = variableOf(inputs);
  requireNetcdf4<QUARNA::imagesci::netcdf::attemptedChecksumInquiryOnNetcdf3File>(ncid, row);
  int setting = -1;
  checkStatus(nc_inq_var_fletcher32(ncid, varid, &setting), row);
  if (setting == NC_NOCHECKSUM) {
    plhs[0] = makeAsciiText("NOCHECKSUM");
  } else if (setting == NC_FLETCHER32) {
    plhs[0] = makeAsciiText("FLETCHER32");
  } else {
    qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedFletcher32Setting(setting));
  }
}
