#include "convert/scalars.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

#include "convert/truncate.hpp"
#include "gateway/errors.hpp"

namespace {

[[noreturn]] void raiseBadScalar(const std::string& name) {
  qvErrMsgId(QUARNA::imagesci::netcdf::badScalarArgument(name, "numeric"));
}

template <class T, class S>
T convertElement(S value, const std::string& name, ScalarUse use) {
  if constexpr (std::is_floating_point_v<S>) {
    if (use != ScalarUse::FillValue && !std::isfinite(value)) raiseBadScalar(name);
    // A NaN fill value passes the range check but has no integer value; casting it would
    // be undefined, so it becomes 0.
    if constexpr (std::is_integral_v<T>) {
      if (std::isnan(value)) return T{0};
    }
  }
  return TruncatingConverter<T, S>::convert(value);
}

}  // namespace

template <class T>
T getScalar(const qvArray* a, const std::string& name, ScalarUse use) {
  if (qvIsEmpty(a) || qvGetNumberOfElements(a) != 1) {
    if (std::is_floating_point_v<T> && use == ScalarUse::FillValue) {
      qvErrMsgId(QUARNA::imagesci::netcdf::fillValueBadArgument());
    }
    raiseBadScalar(name);
  }
  const qvClassID cls = qvGetClassID(a);
  // Only real numeric values are accepted; the imaginary part would be silently lost.
  if (!qvIsNumericClassID(cls) || qvIsComplex(a)) raiseBadScalar(name);
  return qvVisitNumeric(cls, [&](auto s) {
    return convertElement<T>(*static_cast<const decltype(s)*>(qvGetData(a)), name, use);
  });
}

#define NETCDFLIB_SCALAR(T) template T getScalar<T>(const qvArray*, const std::string&, ScalarUse);
NETCDFLIB_SCALAR(int)
NETCDFLIB_SCALAR(std::size_t)
NETCDFLIB_SCALAR(double)
NETCDFLIB_SCALAR(float)
NETCDFLIB_SCALAR(long long)
NETCDFLIB_SCALAR(unsigned long long)
NETCDFLIB_SCALAR(unsigned int)
NETCDFLIB_SCALAR(unsigned short)
NETCDFLIB_SCALAR(short)
NETCDFLIB_SCALAR(unsigned char)
NETCDFLIB_SCALAR(signed char)
#undef NETCDFLIB_SCALAR

std::optional<int> getRawInt(const qvArray* a) {
  if (qvGetClassID(a) == qvINT32_CLASS) return *static_cast<const int*>(qvGetData(a));
  if (qvGetClassID(a) == qvDOUBLE_CLASS) {
    return truncateToInt(*static_cast<const double*>(qvGetData(a)));
  }
  return std::nullopt;
}

float getRawSingle(const qvArray* a) {
  float value = 0.0f;
  const std::size_t bytes = qvGetNumberOfElements(a) * qvElementSize(qvGetClassID(a));
  if (qvGetData(a) != nullptr) std::memcpy(&value, qvGetData(a), std::min(bytes, sizeof value));
  return value;
}

bool getLogicalFlag(const qvArray* a, const std::string& name) {
  if (!qvIsLogicalScalar(a)) qvErrMsgId(QUARNA::imagesci::netcdf::expectedLogicalType(name));
  return qvGetLogicals(a)[0];
}

void checkFiniteForInteger(const qvArray* a, std::ptrdiff_t count, const std::string& name) {
  const auto* values = static_cast<const double*>(qvGetData(a));
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    if (!std::isfinite(values[i])) {
      qvErrMsgId(QUARNA::imagesci::netcdf::invalidNaNInfForIntegerType(name));
    }
  }
}
