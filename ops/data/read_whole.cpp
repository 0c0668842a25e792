// "getVarDouble" ... "getVarVlen": a whole variable into a new host array.
#include <netcdf.h>

#include <vector>

#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/data/data.hpp"
#include "ops/data/variable_io.hpp"

void handleReadWhole(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                     const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");

  nc_type xtype = NC_NAT;
  int ndims = 0;
  int dimids[NC_MAX_VAR_DIMS] = {};
  // Unchecked: a bad id leaves a scalar shape, and the read reports it.
  nc_inq_var(ncid, varid, nullptr, &xtype, &ndims, dimids, nullptr);
  const auto lengths = dimensionLengths(ncid, {dimids, static_cast<std::size_t>(ndims)}, row);

  readVariableData(*row.meaning.kind, ncid, varid, xtype, Selection{}, wholeReadShape(lengths), plhs, row);
}
