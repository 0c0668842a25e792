// Shapes of read results and the arrays that receive them. The host is column-major
// and netCDF row-major, so a netCDF block read into the reversed shape is already in
// host order: nothing is transposed.
#pragma once

#include <boost/container/small_vector.hpp>
#include <cstddef>
#include <cstdint>
#include <span>

#include "qvhost/array.hpp"

// Result shapes are made on every read; common ranks need no heap allocation.
using DimList = boost::container::small_vector<std::uint64_t, 8>;

// A list of contiguous elements as a span (Boost's small vectors do not convert by
// themselves).
template <class List>
std::span<const typename List::value_type> spanOf(const List& list) noexcept {
  return {list.data(), list.size()};
}

// Whole variable: 1-by-1 for a scalar, n-by-1 for rank 1, the reversed lengths for higher
// ranks, and 0-by-0 whenever there is no element at all.
DimList wholeReadShape(std::span<const std::size_t> netcdfLengths);
// Subset: the reversed counts over at least two extents; zero counts are kept.
DimList subsetReadShape(std::span<const std::size_t> netcdfCounts);
// Attribute of len values: a 1-by-len row, 0-by-0 when empty.
DimList attributeShape(std::size_t len);

std::size_t elementCount(const DimList& dims) noexcept;

// Uninitialised real array that netCDF-C writes into.
qvArrayPtr makeNumericOutput(qvClassID cls, const DimList& dims);

// Char array of dims whose first n elements are the bytes widened by sign extension.
qvArrayPtr makeCharOutput(const DimList& dims, const char* bytes, std::size_t n);

// String array of dims whose first n elements are the UTF-8 texts decoded.
qvArrayPtr makeStringOutput(const DimList& dims, const char* const* utf8, std::size_t n);
