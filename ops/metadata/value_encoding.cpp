// How a netCDF-4 variable's values are stored: lossy quantization and byte order.
#include <netcdf.h>

#include <array>

#include "convert/filter_args.hpp"
#include "convert/outputs.hpp"
#include "convert/scalars.hpp"
#include "gateway/status.hpp"
#include "ops/metadata/metadata.hpp"
#include "ops/metadata/variable_ref.hpp"

namespace {
constexpr std::array kQuantizeModes{
    NamedCode{"none", NC_NOQUANTIZE},
    NamedCode{"BitGroom", NC_QUANTIZE_BITGROOM},
    NamedCode{"GranularBitRound", NC_QUANTIZE_GRANULARBR},
    NamedCode{"BitRound", NC_QUANTIZE_BITROUND},
};
constexpr std::array kEndianness{
    NamedCode{"native", NC_ENDIAN_NATIVE},
    NamedCode{"little", NC_ENDIAN_LITTLE},
    NamedCode{"big", NC_ENDIAN_BIG},
};
}  // namespace

NETCDFLIB_HANDLER(handleDefVarQuantize) {
  const auto [ncid, varid] = variableOf(inputs);
  const int mode = getNamedCode(inputs[2], "mode", kQuantizeModes);
  const int nsd = getScalar<int>(inputs[3], "nsd");
  checkStatus(nc_def_var_quantize(ncid, varid, mode, nsd), row);
}

NETCDFLIB_HANDLER(handleInqVarQuantize) {
  const auto [ncid, varid] = variableOf(inputs);
  int mode = NC_NOQUANTIZE, nsd = 0;
  checkStatus(nc_inq_var_quantize(ncid, varid, &mode, &nsd), row);
  plhs[0] = makeCodeName(mode, kQuantizeModes);
  plhs[1] = makeDoubleScalar(nsd);
}

NETCDFLIB_HANDLER(handleDefVarEndian) {
  const auto [ncid, varid] = variableOf(inputs);
  const int endian = getNamedCode(inputs[2], "endian", kEndianness);
  // netCDF-C 4.9.0 stores any number here and answers it back as the byte order; HDF5
  // then writes native order.
  if (endian < NC_ENDIAN_NATIVE || endian > NC_ENDIAN_BIG) checkStatus(NC_EINVAL, row);
  checkStatus(nc_def_var_endian(ncid, varid, endian), row);
}

NETCDFLIB_HANDLER(handleInqVarEndian) {
  const auto [ncid, varid] = variableOf(inputs);
  int endian = NC_ENDIAN_NATIVE;
  checkStatus(nc_inq_var_endian(ncid, varid, &endian), row);
  plhs[0] = makeCodeName(endian, kEndianness);
}
