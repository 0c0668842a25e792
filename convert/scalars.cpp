#include "convert/scalars.hpp"

#include <array>
#include <cmath>
#include <cstdint>
#include <tuple>
#include <type_traits>
#include <utility>

#include "convert/numeric_run.hpp"
#include "gateway/errors.hpp"

namespace {

// Fill values may be NaN or Inf, and an empty fill value for a floating variable has an
// error of its own.
constexpr const char* kFillValueName = "FILLVALUE";

[[noreturn]] void raiseBadScalar(const std::string& name) {
  qvErrMsgId(QUARNA::imagesci::netcdf::badScalarArgument(name, "numeric"));
}

template <class T, class S>
T convertElement(const void* data, const std::string& name) {
  const S value = *static_cast<const S*>(data);
  if constexpr (std::is_floating_point_v<S>) {
    if (name != kFillValueName && (qvIsNaN(value) || qvIsInf(value))) {
      raiseBadScalar(name);
    }
    // A NaN fill value passes the range check but has no integer value; casting it would
    // be undefined, so it becomes 0.
    if constexpr (std::is_integral_v<T>) {
      if (std::isnan(value)) {
        return T{0};
      }
    }
  }
  return TruncatingConverter<T, S>::convert(value);
}

template <class T>
using ElementConverter = T (*)(const void*, const std::string&);

template <class T, std::size_t... I>
constexpr std::array<ElementConverter<T>, sizeof...(I)> makeConverters(std::index_sequence<I...>) {
  return {&convertElement<T, std::tuple_element_t<I, NumericElementTypes>>...};
}

template <class T>
constexpr auto kConverters = makeConverters<T>(std::make_index_sequence<kNumericClassCount>{});

}  // namespace

template <class T>
T getScalar(const qvArray* a, const std::string& name) {
  if (qvIsEmpty(a) || qvGetNumberOfElements(a) != 1) {
    if (std::is_floating_point_v<T> && name == kFillValueName) {
      qvErrMsgId(QUARNA::imagesci::netcdf::fillValueBadArgument());
    }
    raiseBadScalar(name);
  }
  const qvClassID cls = qvGetClassID(a);
  // Only real numeric values are accepted; the imaginary part would be silently lost.
  if (!qvIsNumericClassID(cls) || qvIsComplex(a)) {
    raiseBadScalar(name);
  }
  return kConverters<T>[numericIndex(cls)](qvGetData(a), name);
}

template int getScalar<int>(const qvArray*, const std::string&);
template std::size_t getScalar<std::size_t>(const qvArray*, const std::string&);
template double getScalar<double>(const qvArray*, const std::string&);
template float getScalar<float>(const qvArray*, const std::string&);
template long long getScalar<long long>(const qvArray*, const std::string&);
template unsigned long long getScalar<unsigned long long>(const qvArray*, const std::string&);
template unsigned int getScalar<unsigned int>(const qvArray*, const std::string&);
template unsigned short getScalar<unsigned short>(const qvArray*, const std::string&);
template short getScalar<short>(const qvArray*, const std::string&);
template unsigned char getScalar<unsigned char>(const qvArray*, const std::string&);
template signed char getScalar<signed char>(const qvArray*, const std::string&);

bool getLogicalFlag(const qvArray* a, const std::string& name) {
  if (!qvIsLogicalScalar(a)) {
    qvErrMsgId(QUARNA::imagesci::netcdf::expectedLogicalType(name));
  }
  return qvGetLogicals(a)[0];
}

void checkFiniteForInteger(const qvArray* a, std::ptrdiff_t count, const std::string& name) {
  const auto* values = static_cast<const double*>(qvGetData(a));
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    if (qvIsNaN(values[i]) || qvIsInf(values[i])) {
      qvErrMsgId(QUARNA::imagesci::netcdf::invalidNaNInfForIntegerType(name));
    }
  }
}

std::size_t numberOfElements(const qvArray* a) noexcept { return qvGetNumberOfElements(a); }
