#include "convert/index.hpp"

#include <netcdf.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "convert/scalars.hpp"
#include "convert/truncate.hpp"
#include "gateway/errors.hpp"

namespace {

constexpr std::size_t kMaxRowLength = NC_MAX_VAR_DIMS;

template <class List>
List convertIndexVector(const qvArray* a, const std::string& name) {
  using T = typename List::value_type;
  if (qvIsEmpty(a)) qvErrMsgId(QUARNA::imagesci::netcdf::argumentIsEmpty(name));
  const qvClassID cls = qvGetClassID(a);
  if (!qvIsNumericClassID(cls)) qvErrMsgId(QUARNA::imagesci::netcdf::argumentHasBadDatatype(name));
  const std::size_t n = qvGetNumberOfElements(a);
  List out(n);
  qvVisitNumeric(cls, [&](auto sourceTag) {
    using S = decltype(sourceTag);
    const S* values = static_cast<const S*>(qvGetData(a));
    if constexpr (std::is_floating_point_v<S>) {
      // The whole vector is judged finite before any element is converted.
      if (std::any_of(values, values + n, [](S v) { return std::isnan(v); }) ||
          std::any_of(values, values + n, [](S v) { return std::isinf(v); })) {
        qvErrMsgId(QUARNA::imagesci::netcdf::indexArgumentNotFinite());
      }
    }
    for (std::size_t i = 0; i < n; ++i) out[i] = TruncatingConverter<T, S>::convert(values[i]);
  });
  std::reverse(out.begin(), out.end());
  return out;
}

// Rows come as doubles; both callers first refuse rows too long for an int count and
// rows holding NaN or Inf, whatever their class.
template <class T, class Truncate>
std::vector<T> convertRow(const qvArray* a, const std::string& name, Truncate truncate) {
  const std::size_t n = qvGetNumberOfElements(a);
  const int count = TruncatingConverter<int, std::size_t>::convert(n);
  // A row of another class is read as doubles only as far as its data block goes.
  const std::size_t bytes = n * qvElementSize(qvGetClassID(a));
  checkFiniteForInteger(a, std::min<std::ptrdiff_t>(count, bytes / sizeof(double)), name);
  if (qvGetClassID(a) != qvDOUBLE_CLASS) qvErrMsgId(QUARNA::imagesci::netcdf::badRowDatatype(name));
  if (n > kMaxRowLength)
    qvErrMsgId(QUARNA::imagesci::netcdf::rowLengthOutOfBounds(name, kMaxRowLength));
  const double* values = static_cast<const double*>(qvGetData(a));
  std::vector<T> out(n);
  std::transform(values, values + n, out.rbegin(), truncate);
  return out;
}

}  // namespace

IndexList getIndexVector(const qvArray* a, const std::string& name) {
  return convertIndexVector<IndexList>(a, name);
}

StrideList getStrideVector(const qvArray* a, const std::string& name) {
  return convertIndexVector<StrideList>(a, name);
}

std::vector<int> getDimensionIdRow(const qvArray* a, const std::string& name) {
  return convertRow<int>(a, name, truncateToInt);
}

std::vector<std::size_t> getChunkSizeRow(const qvArray* a, const std::string& name) {
  return convertRow<std::size_t>(a, name, truncateToSize);
}
