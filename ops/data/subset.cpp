#include "ops/data/subset.hpp"

#include <netcdf.h>

#include "convert/index.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"

Selection getSubset(const qvArray* const* inputs, Form form) {
  const bool hasCount = form != Form::One;
  const bool hasStride = form == Form::Strided;
  Selection where;
  where.whole = false;
  where.start = getIndexVector(inputs[0], "START");
  where.count = hasCount ? getIndexVector(inputs[1], "COUNT") : IndexList(where.start.size(), 1);
  where.stride =
      hasStride ? getStrideVector(inputs[2], "STRIDE") : StrideList(where.start.size(), 1);
  return where;
}

VariableRank checkSubsetLengths(int ncid, int varid, const Selection& where, LengthReport report,
                                const OperationRow& row) {
  char name[NC_MAX_NAME + 1] = {};
  int ndims = 0;
  nc_type xtype = NC_NAT;
  checkStatus(nc_inq_var(ncid, varid, name, &xtype, &ndims, nullptr, nullptr), row);
  const struct {
    const char* argument;
    std::size_t length;
  } vectors[] = {{"START", where.start.size()},
                 {"COUNT", where.count.size()},
                 {"STRIDE", where.stride.size()}};
  for (const auto& v : vectors) {
    // Compared as 32-bit counts, as netCDF-C holds ranks.
    if (static_cast<int>(v.length) != ndims) {
      const std::size_t reported =
          report == LengthReport::StartLength ? where.start.size() : v.length;
      qvErrMsgId(QUARNA::imagesci::netcdf::badIndexArgumentLength(v.argument, name, ndims,
                                                                  static_cast<long>(reported)));
    }
  }
  return {ndims, xtype};
}
