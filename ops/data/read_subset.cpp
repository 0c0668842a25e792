// "getVar1Double" ... "getVarsVlen": one element, a block or a strided block.
#include <netcdf.h>

#include <cstddef>
#include <optional>
#include <vector>

#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/data/data.hpp"
#include "ops/data/subset.hpp"

namespace {
// The result is allocated before netCDF-C sees COUNT, so a COUNT larger than a dimension
// would first ask for that much memory (gigabytes for a typo) only to be refused. No
// selection can hold more elements along a dimension than it has, so such a COUNT gets
// netCDF-C's own refusal up front, with the status netCDF-C checks first. Small results
// are left to netCDF-C: asking for the dimension lengths would cost a single-element read
// more than the rest of its checks.
constexpr std::size_t kCheckedFromElements = std::size_t{1} << 16;

void refuseCountBeyondDimensions(int ncid, int varid, const Selection& where,
                                 const OperationRow& row) {
  const std::optional<std::size_t> selected = elementProduct(spanOf(where.count));
  if (selected && *selected < kCheckedFromElements) return;
  std::vector<int> dimids(where.count.size(), 0);
  checkStatus(nc_inq_vardimid(ncid, varid, dimids.data()), row);
  const std::vector<std::size_t> lengths = dimensionLengths(ncid, dimids, row);
  bool beyond = false;
  for (std::size_t d = 0; d < dimids.size(); ++d) beyond = beyond || where.count[d] > lengths[d];
  if (!beyond) return;
  for (const std::ptrdiff_t stride : where.stride) {
    if (stride < 1) checkStatus(NC_ESTRIDE, row);
  }
  // A read must start inside the dimension wherever it takes anything from it.
  for (std::size_t d = 0; d < dimids.size(); ++d) {
    if (where.start[d] > lengths[d] || (where.start[d] == lengths[d] && where.count[d] > 0)) {
      checkStatus(NC_EINVALCOORDS, row);
    }
  }
  checkStatus(NC_EEDGE, row);
}
}  // namespace

void handleReadSubset(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                      const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  const Selection where = getSubset(inputs + 2, row.meaning.form);
  const VariableRank variable =
      checkSubsetLengths(ncid, varid, where, LengthReport::StartLength, row);
  refuseCountBeyondDimensions(ncid, varid, where, row);

  readVariableData(*row.meaning.kind, ncid, varid, variable.xtype, where, subsetReadShape(spanOf(where.count)),
                   plhs, row);
}
