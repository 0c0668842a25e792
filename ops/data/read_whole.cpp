// "getVarDouble" ... "getVarVlen": a whole variable into a new host array.
#include <netcdf.h>

#include <vector>

#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/data/data.hpp"
#include "ops/data/own_type.hpp"
#include "ops/data/variable_io.hpp"

ReadPlan prepareWholeRead(int ncid, int varid, const OperationRow& row) {
  ReadPlan plan;
  int ndims = 0;
  int dimids[NC_MAX_VAR_DIMS] = {};
  // Unchecked: a bad id leaves a scalar shape, and the read reports it.
  nc_inq_var(ncid, varid, nullptr, &plan.xtype, &ndims, dimids, nullptr);
  plan.dims =
      wholeReadShape(dimensionLengths(ncid, {dimids, static_cast<std::size_t>(ndims)}, row));
  return plan;
}

void handleReadWhole(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                     const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  if (!row.meaning.kind) return readOwnTypeVariable(ncid, varid, inputs, plhs, row);
  const ReadPlan plan = prepareWholeRead(ncid, varid, row);
  readVariableData(*row.meaning.kind, ncid, varid, plan.xtype, plan.where, plan.dims, plhs, row);
}
