// What the argument conversions share about the numeric classes: their element types in
// the order of their run in qvClassID, and Boost's truncating range-checked conversion.
#pragma once

#include <boost/numeric/conversion/converter.hpp>
#include <cstddef>
#include <cstdint>
#include <tuple>

#include "qvhost/array.hpp"

using NumericElementTypes =
    std::tuple<double, float, std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
               std::uint32_t, std::int64_t, std::uint64_t>;
inline constexpr std::size_t kNumericClassCount = std::tuple_size_v<NumericElementTypes>;
static_assert(qvUINT64_CLASS - qvDOUBLE_CLASS + 1 == kNumericClassCount);

// Position of a numeric class in the run.
constexpr std::size_t numericIndex(qvClassID cls) noexcept {
  return static_cast<std::size_t>(cls - qvDOUBLE_CLASS);
}

// Truncates toward zero; out of range throws boost::numeric::negative_overflow or
// positive_overflow.
template <class T, class S>
using TruncatingConverter =
    boost::numeric::converter<T, S, boost::numeric::conversion_traits<T, S>,
                              boost::numeric::def_overflow_handler, boost::numeric::Trunc<S>>;

// Calls f(S{}) with the element type S of numeric class cls.
template <class F>
decltype(auto) visitNumericClass(qvClassID cls, F&& f) {
  switch (cls) {
    case qvDOUBLE_CLASS:
      return f(double{});
    case qvSINGLE_CLASS:
      return f(float{});
    case qvINT8_CLASS:
      return f(std::int8_t{});
    case qvUINT8_CLASS:
      return f(std::uint8_t{});
    case qvINT16_CLASS:
      return f(std::int16_t{});
    case qvUINT16_CLASS:
      return f(std::uint16_t{});
    case qvINT32_CLASS:
      return f(std::int32_t{});
    case qvUINT32_CLASS:
      return f(std::uint32_t{});
    case qvINT64_CLASS:
      return f(std::int64_t{});
    default:
      return f(std::uint64_t{});
  }
}
