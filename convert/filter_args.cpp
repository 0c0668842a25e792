#include "convert/filter_args.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include "convert/scalars.hpp"
#include "convert/text.hpp"
#include "gateway/errors.hpp"

namespace {

constexpr const char* kUnsigned32Kind = "whole numbers from 0 to 4294967295 (unsigned 32-bit)";

[[noreturn]] void raiseNotUnsigned32(const std::string& name) {
  qvErrMsgId(QUARNA::imagesci::netcdf::argumentNotOfKind(name, kUnsigned32Kind));
}

template <class S>
bool isUnsigned32(S v) {
  constexpr auto kMax = std::numeric_limits<std::uint32_t>::max();
  if constexpr (std::is_floating_point_v<S>) {
    return std::isfinite(v) && v >= 0 && v <= static_cast<S>(kMax) && std::trunc(v) == v;
  } else if constexpr (std::is_signed_v<S>) {
    return v >= 0 && static_cast<std::uint64_t>(v) <= kMax;
  } else {
    return static_cast<std::uint64_t>(v) <= kMax;
  }
}

// Every element of a real numeric array, checked; raises at the first that is not exact.
std::vector<unsigned> readUnsigned32(const qvArray* a, const std::string& name) {
  const qvClassID cls = qvGetClassID(a);
  if (!qvIsNumericClassID(cls) || qvIsComplex(a)) raiseNotUnsigned32(name);
  const std::size_t n = qvGetNumberOfElements(a);
  return qvVisitNumeric(cls, [&](auto s) {
    using S = decltype(s);
    const auto* values = static_cast<const S*>(qvGetData(a));
    std::vector<unsigned> out(n);
    for (std::size_t i = 0; i < n; ++i) {
      if (!isUnsigned32(values[i])) raiseNotUnsigned32(name);
      out[i] = static_cast<unsigned>(values[i]);
    }
    return out;
  });
}

bool sameIgnoringCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](char x, char y) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return lower(x) == lower(y);
  });
}

}  // namespace

unsigned getUnsigned32(const qvArray* a, const std::string& name) {
  if (qvGetNumberOfElements(a) != 1) raiseNotUnsigned32(name);
  return readUnsigned32(a, name)[0];
}

std::vector<unsigned> getUnsigned32Row(const qvArray* a, const std::string& name) {
  const std::uint64_t* dims = qvGetDimensions(a);
  const bool vector = qvGetNumberOfDimensions(a) == 2 && (dims[0] == 1 || dims[1] == 1);
  if (!qvIsEmpty(a) && !vector) raiseNotUnsigned32(name);
  return readUnsigned32(a, name);
}

qvArrayPtr makeUnsigned32Row(std::span<const unsigned> values) {
  const std::array<std::uint64_t, 2> dims{values.empty() ? 0u : 1u, values.size()};
  qvArrayPtr a = matrix::detail::do_create_uninitnumeric(dims, qvDOUBLE_CLASS, qvREAL);
  std::ranges::copy(values, static_cast<double*>(qvGetData(a.get())));
  return a;
}

int getNamedCode(const qvArray* a, const std::string& argName, std::span<const NamedCode> codes) {
  if (qvGetClassID(a) != qvCHAR_CLASS) return getScalar<int>(a, argName);
  const std::string text = getName(a, argName);
  const auto found = std::ranges::find_if(
      codes, [&](const NamedCode& c) { return sameIgnoringCase(c.name, text); });
  if (found == codes.end()) qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedCharParameter(text));
  return found->code;
}

qvArrayPtr makeCodeName(int code, std::span<const NamedCode> codes) {
  const auto found = std::ranges::find(codes, code, &NamedCode::code);
  return makeAsciiText(found != codes.end() ? found->name : std::to_string(code));
}

std::span<const std::byte> getBytes(const qvArray* a, const std::string& name) {
  if (qvGetClassID(a) != qvUINT8_CLASS || qvIsComplex(a)) {
    qvErrMsgId(QUARNA::imagesci::netcdf::argumentNotOfKind(name, "a real uint8 array"));
  }
  return {static_cast<const std::byte*>(qvGetData(a)), qvGetNumberOfElements(a)};
}

qvArrayPtr makeByteColumn(std::span<const std::byte> bytes) {
  const std::array<std::uint64_t, 2> dims{bytes.size(), 1};
  qvArrayPtr a = matrix::detail::do_create_uninitnumeric(dims, qvUINT8_CLASS, qvREAL);
  if (!bytes.empty()) std::memcpy(qvGetData(a.get()), bytes.data(), bytes.size());
  return a;
}
