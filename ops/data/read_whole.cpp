// "getVarDouble" ... "getVarVlen": a whole variable into a new host array.
#include <netcdf.h>

#include <vector>

#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/data/data.hpp"
#include "ops/data/variable_io.hpp"

namespace {
constexpr int kFirstOpId = 30;
}

ReadPlan prepareWholeRead(int ncid, int varid, const OperationRow& row) {
  ReadPlan plan;
  int ndims = 0;
  int dimids[NC_MAX_VAR_DIMS] = {};
  // Unchecked: a bad id leaves a scalar shape, and the read reports it.
  nc_inq_var(ncid, varid, nullptr, &plan.xtype, &ndims, dimids, nullptr);
  std::vector<std::size_t> lengths(static_cast<std::size_t>(ndims), 0);
  for (int i = 0; i < ndims; ++i) checkStatus(nc_inq_dimlen(ncid, dimids[i], &lengths[i]), row);
  plan.dims = wholeReadShape(lengths);
  return plan;
}

void handleReadWhole(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                     const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  const auto kind = kindOfOperation(row.opId, kFirstOpId, false);
  if (!kind) qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedOperation(row.name));
  const ReadPlan plan = prepareWholeRead(ncid, varid, row);
  readVariableData(*kind, ncid, varid, plan.xtype, plan.where, plan.dims, plhs, row);
}
