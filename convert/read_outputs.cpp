#include "convert/read_outputs.hpp"

#include <algorithm>
#include <functional>
#include <numeric>

#include "convert/text.hpp"
#include "qvhost/strings.hpp"
#include "qvhost/text.hpp"

namespace {
// At least two extents, the netCDF list reversed over leading ones.
DimList reversedOverOnes(std::span<const std::size_t> netcdfList) {
  DimList dims(std::max<std::size_t>(netcdfList.size(), 2), 1);
  std::copy(netcdfList.rbegin(), netcdfList.rend(), dims.begin());
  return dims;
}
}  // namespace

DimList wholeReadShape(std::span<const std::size_t> netcdfLengths) {
  const bool empty =
      std::find(netcdfLengths.begin(), netcdfLengths.end(), 0u) != netcdfLengths.end();
  if (empty) return {0, 0};
  return reversedOverOnes(netcdfLengths);
}

DimList subsetReadShape(std::span<const std::size_t> netcdfCounts) {
  return reversedOverOnes(netcdfCounts);
}

DimList attributeShape(std::size_t len) {
  if (len == 0) return {0, 0};
  return {1, len};
}

std::size_t elementCount(const DimList& dims) noexcept {
  return std::accumulate(dims.begin(), dims.end(), std::size_t{1}, std::multiplies<>());
}

qvArrayPtr makeNumericOutput(qvClassID cls, const DimList& dims) {
  return matrix::detail::do_create_uninitnumeric(spanOf(dims), cls, qvREAL);
}

qvArrayPtr makeCharOutput(const DimList& dims, const char* bytes, std::size_t n) {
  qvArrayPtr out = matrix::detail::do_create_numeric(spanOf(dims), qvCHAR_CLASS, qvREAL);
  widenCharData(bytes, n, static_cast<char16_t*>(qvGetData(out.get())));
  return out;
}

qvArrayPtr makeStringOutput(const DimList& dims, const char* const* utf8, std::size_t n) {
  qvArrayPtr out = createStringArray(dims.size(), dims.data());
  for (std::size_t i = 0; i < n; ++i) {
    setStringElement(out.get(), i, utf8[i] ? utf8_to_ustring(utf8[i]) : std::u16string());
  }
  return out;
}
