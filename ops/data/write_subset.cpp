// "putVar1Double" ... "putVarsVlen": one element, a block or a strided block; the way to
// grow a variable along an unlimited dimension.
#include <netcdf.h>

#include <limits>

#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "ops/data/data.hpp"
#include "ops/data/own_type.hpp"
#include "ops/data/subset.hpp"

Selection prepareSubsetWrite(const qvArray* const* inputs, std::size_t count, int ncid, int varid,
                             const OperationRow& row) {
  Selection where = getSubset(inputs + 2, row.meaning.form);
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
  return where;
}

void handleWriteSubset(int, qvArrayPtr*, int nInputs, const qvArray* const* inputs,
                       const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  if (!row.meaning.kind) return writeOwnTypeVariable(ncid, varid, nInputs, inputs, row);
  const qvArray* data = inputs[nInputs - 1];
  const Selection where =
      prepareSubsetWrite(inputs, qvGetNumberOfElements(data), ncid, varid, row);
  writeVariableData(*row.meaning.kind, ncid, varid, where, data, row);
}
