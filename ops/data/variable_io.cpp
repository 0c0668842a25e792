#include "ops/data/variable_io.hpp"

#include <algorithm>
#include <memory>

#include "convert/data_block.hpp"
#include "convert/text.hpp"
#include "convert/vlen.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/data/typed_reads.hpp"
#include "qvhost/array.hpp"

namespace {

template <class Traits, class Buffer>
int readInto(int ncid, int varid, const Selection& where, Buffer* buffer) {
  if (where.whole) return Traits::getVar(ncid, varid, buffer);
  return Traits::getVars(ncid, varid, where.start.data(), where.count.data(), where.stride.data(),
                         buffer);
}

template <class Traits, class Buffer>
int writeFrom(int ncid, int varid, const Selection& where, Buffer buffer) {
  if (where.whole) return Traits::putVar(ncid, varid, buffer);
  return Traits::putVars(ncid, varid, where.start.data(), where.count.data(), where.stride.data(),
                         buffer);
}

}  // namespace

std::vector<std::size_t> dimensionLengths(int ncid, std::span<const int> dimids,
                                          const OperationRow& row) {
  std::vector<std::size_t> lengths(dimids.size(), 0);
  for (std::size_t d = 0; d < dimids.size(); ++d) {
    checkStatus(nc_inq_dimlen(ncid, dimids[d], &lengths[d]), row);
  }
  return lengths;
}

std::optional<std::size_t> elementProduct(std::span<const std::size_t> lengths) noexcept {
  if (std::find(lengths.begin(), lengths.end(), 0u) != lengths.end()) return 0;
  std::size_t product = 1;
  for (const std::size_t length : lengths) {
    if (__builtin_mul_overflow(product, length, &product)) return std::nullopt;
  }
  return product;
}

void readVariableData(DataKind kind, int ncid, int varid, nc_type xtype, const Selection& where,
                      const DimList& dims, qvArrayPtr* plhs, const OperationRow& row) {
  const std::size_t total = elementCount(dims);
  switch (kind) {
    case DataKind::Text: {
      const auto bytes = zeroedText(total, 1);
      checkStatus(readInto<TypeTraits<DataKind::Text>>(ncid, varid, where, bytes.get()), row);
      plhs[0] = makeCharOutput(dims, bytes.get(), total);
      return;
    }
    case DataKind::String:
      plhs[0] = readStrings(
          dims, total,
          [&](char** buffer) {
            return readInto<TypeTraits<DataKind::String>>(ncid, varid, where, buffer);
          },
          row);
      return;
    case DataKind::Vlen:
      plhs[0] = readVlens(
          ncid, xtype, dims, total,
          [&](nc_vlen_t* buffer) {
            return readInto<TypeTraits<DataKind::Vlen>>(ncid, varid, where, buffer);
          },
          row);
      return;
    default:
      readNumeric(
          kind, dims, plhs[0],
          [&](auto traits, auto* buffer) {
            return readInto<decltype(traits)>(ncid, varid, where, buffer);
          },
          row);
  }
}

void writeVariableData(DataKind kind, int ncid, int varid, const Selection& where,
                       const qvArray* data, const OperationRow& row) {
  switch (kind) {
    case DataKind::Text: {
      requireDataClass(data, qvCHAR_CLASS);
      const std::vector<char> bytes = narrowCharData(data);
      checkStatus(writeFrom<TypeTraits<DataKind::Text>>(ncid, varid, where, bytes.data()), row);
      return;
    }
    case DataKind::String: {
      requireDataClass(data, qvSTRING_CLASS);
      Utf8StringList strings(data);
      checkStatus(writeFrom<TypeTraits<DataKind::String>>(ncid, varid, where, strings.pointers()),
                  row);
      return;
    }
    case DataKind::Vlen: {
      requireDataClass(data, qvCELL_CLASS);
      nc_type xtype = NC_NAT;
      nc_inq_vartype(ncid, varid, &xtype);
      VlenRecords records(ncid, vlenBaseType(ncid, xtype), data);
      checkStatus(writeFrom<TypeTraits<DataKind::Vlen>>(ncid, varid, where, records.data()), row);
      return;
    }
    default:
      visitNumericKind(kind, [&](auto traits) {
        using Traits = decltype(traits);
        requireDataClass(data, Traits::hostClass);
        const auto* buffer = static_cast<const typename Traits::Element*>(qvGetData(data));
        checkStatus(writeFrom<Traits>(ncid, varid, where, buffer), row);
      });
  }
}
