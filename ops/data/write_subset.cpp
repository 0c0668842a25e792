// "putVar1Double" ... "putVarsVlen": one element, a block or a strided block; the way to
// grow a variable along an unlimited dimension.
#include <netcdf.h>

#include <limits>

#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "ops/data/data.hpp"
#include "ops/data/subset.hpp"

void handleWriteSubset(int, qvArrayPtr*, int nInputs, const qvArray* const* inputs,
                       const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  const Selection where = getSubset(inputs + 2, row.meaning.form);
  const qvArray* data = inputs[nInputs - 1];
  const std::size_t count = qvGetNumberOfElements(data);
  if (count == 0) qvErrMsgId(QUARNA::imagesci::netcdf::emptyVariableData());

  checkSubsetLengths(ncid, varid, where, LengthReport::OwnLength, row);
  // A selection too large to count (2^63 + 1 squared wraps to 1) is reported as the
  // largest count there is.
  const std::optional<std::size_t> selected = elementProduct(spanOf(where.count));
  if (selected != count) {
    const long reported =
        selected ? static_cast<long>(*selected) : std::numeric_limits<long>::max();
    qvErrMsgId(QUARNA::imagesci::netcdf::countNotEqualToData(reported, static_cast<long>(count)));
  }

  writeVariableData(*row.meaning.kind, ncid, varid, where, data, row);
}
