// "putVarDouble" ... "putVarVlen": the whole of a variable from one host array. Never
// extends an unlimited dimension; the subset writes do.
#include <netcdf.h>

#include <vector>

#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/data/data.hpp"
#include "ops/data/own_type.hpp"
#include "ops/data/variable_io.hpp"

Selection prepareWholeWrite(int ncid, int varid, std::size_t count, const OperationRow& row) {
  if (count == 0) qvErrMsgId(QUARNA::imagesci::netcdf::emptyVariableData());

  int ndims = 0;
  int dimids[NC_MAX_VAR_DIMS] = {};
  checkStatus(nc_inq_var(ncid, varid, nullptr, nullptr, &ndims, dimids, nullptr), row);
  const auto lengths = dimensionLengths(ncid, {dimids, static_cast<std::size_t>(ndims)}, row);
  const std::optional<std::size_t> product = elementProduct(lengths);
  if (product == 0u) qvErrMsgId(QUARNA::imagesci::netcdf::incompleteArgsForUnlimitedDimensions());
  // Element counts only: shapes are not compared.
  if (product != count) qvErrMsgId(QUARNA::imagesci::netcdf::dataSizeMismatch());
  return Selection{};
}

void handleWriteWhole(int, qvArrayPtr*, int nInputs, const qvArray* const* inputs,
                      const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  if (!row.meaning.kind) return writeOwnTypeVariable(ncid, varid, nInputs, inputs, row);
  const qvArray* data = inputs[2];
  const Selection where = prepareWholeWrite(ncid, varid, qvGetNumberOfElements(data), row);
  writeVariableData(*row.meaning.kind, ncid, varid, where, data, row);
}
