// Truncation toward zero: range-checked through Boost, or deliberately unchecked where
// the library makes no range check.
#pragma once

#include <boost/numeric/conversion/converter.hpp>
#include <cmath>
#include <cstdint>
#include <limits>

// Out of range throws boost::numeric::negative_overflow or positive_overflow.
template <class T, class S>
using TruncatingConverter =
    boost::numeric::converter<T, S, boost::numeric::conversion_traits<T, S>,
                              boost::numeric::def_overflow_handler, boost::numeric::Trunc<S>>;

// Unchecked: values that do not fit give what an x86-64 conversion gives (the lowest
// value of the type), instead of undefined behaviour.
inline int truncateToInt(double v) noexcept {
  if (!(v > -2147483649.0 && v < 2147483648.0)) return std::numeric_limits<int>::min();
  return static_cast<int>(v);
}

// Chunk sizes: values from 2^63 up keep their top bit, negative values wrap as unsigned
// quantities do.
inline std::uint64_t truncateToSize(double v) noexcept {
  constexpr double kTopBit = 9223372036854775808.0;
  if (v >= kTopBit) {
    if (v - kTopBit >= kTopBit) return std::uint64_t{1} << 63;
    return static_cast<std::uint64_t>(v - kTopBit) | (std::uint64_t{1} << 63);
  }
  if (v > -1.0) return static_cast<std::uint64_t>(v);
  if (!(v > -kTopBit - 1.0)) return std::uint64_t{1} << 63;
  return static_cast<std::uint64_t>(static_cast<std::int64_t>(v));
}
