// Small output arrays the handlers return.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "qvhost/array.hpp"

// 1-by-1 double.
qvArrayPtr makeDoubleScalar(double v);
// 1-by-1 logical.
qvArrayPtr makeLogicalScalar(bool v);
// 1-by-1 of a numeric or char class holding value; zero for netCDF-C to write into when
// no value is given.
template <class T = char>
qvArrayPtr makeScalarOf(qvClassID cls, T value = T{}) {
  qvArrayPtr a = matrix::detail::do_create_numeric(std::vector<std::uint64_t>{1, 1}, cls, qvREAL);
  *static_cast<T*>(qvGetData(a.get())) = value;
  return a;
}
// 0-by-0 double.
qvArrayPtr makeEmptyDouble();
// 1-by-n double row of netCDF-ordered lengths, back in host order; 1-by-0 when empty.
qvArrayPtr makeHostOrderRow(std::span<const std::size_t> lengths);
// n-by-1 cell of ASCII texts.
qvArrayPtr makeTextColumn(std::span<const char* const> texts);
// 1-by-n double row of ids in the given order; 0-by-0 when empty.
qvArrayPtr makeIdList(const std::vector<int>& ids);
