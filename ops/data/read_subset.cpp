// "getVar1Double" ... "getVarsVlen": one element, a block or a strided block.
#include <netcdf.h>

#include <vector>

#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/data/data.hpp"
#include "ops/data/subset.hpp"

namespace {
constexpr int kFirstOpId = 43;
}

void handleReadSubset(int, qvArrayPtr* plhs, int nInputs, const qvArray* const* inputs,
                      const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  const Selection where = getSubset(inputs + 2, nInputs > 3, nInputs == 5);
  const VariableRank variable =
      checkSubsetLengths(ncid, varid, where, LengthReport::StartLength, row);
  std::vector<int> dimids(static_cast<std::size_t>(variable.ndims), 0);
  checkStatus(nc_inq_vardimid(ncid, varid, dimids.data()), row);

  const auto kind = kindOfOperation(row.opId, kFirstOpId, false);
  if (!kind) qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedOperation(row.name));
  readVariableData(*kind, ncid, varid, variable.xtype, where, subsetReadShape(where.count), plhs,
                   row);
}
