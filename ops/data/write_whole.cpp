// "putVarDouble" ... "putVarVlen": the whole of a variable from one host array. Never
// extends an unlimited dimension; the subset writes do.
#include <netcdf.h>

#include <vector>

#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/data/data.hpp"
#include "ops/data/variable_io.hpp"

void handleWriteWhole(int, qvArrayPtr*, int, const qvArray* const* inputs,
                      const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  const qvArray* data = inputs[2];
  const std::size_t count = qvGetNumberOfElements(data);
  if (count == 0) qvErrMsgId(QUARNA::imagesci::netcdf::emptyVariableData());

  int ndims = 0;
  int dimids[NC_MAX_VAR_DIMS] = {};
  checkStatus(nc_inq_var(ncid, varid, nullptr, nullptr, &ndims, dimids, nullptr), row);
  const auto lengths = dimensionLengths(ncid, {dimids, static_cast<std::size_t>(ndims)}, row);
  const std::optional<std::size_t> product = elementProduct(lengths);
  if (product == 0u) qvErrMsgId(QUARNA::imagesci::netcdf::incompleteArgsForUnlimitedDimensions());
  // Element counts only: shapes are not compared.
  if (product != count) qvErrMsgId(QUARNA::imagesci::netcdf::dataSizeMismatch());

  writeVariableData(*row.meaning.kind, ncid, varid, Selection{}, data, row);
}
