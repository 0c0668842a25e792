// START, COUNT and STRIDE vectors, dimension-id rows and chunk-size rows: host arrays in
// host order (fastest dimension first) to native vectors in netCDF order (slowest first).
#pragma once

#include <boost/container/small_vector.hpp>
#include <cstddef>
#include <string>
#include <vector>

#include "qvhost/array.hpp"

// Index vectors are converted on every subset read and write; the ranks in common use
// fit without a heap allocation.
using IndexList = boost::container::small_vector<std::size_t, 8>;
using StrideList = boost::container::small_vector<std::ptrdiff_t, 8>;

// START and COUNT: whole numbers from 0; argumentIsEmpty, argumentHasBadDatatype,
// indexArgumentNotFinite, or a Boost overflow for values outside size_t.
IndexList getIndexVector(const qvArray* a, const std::string& name);
// STRIDE: as above with signed values.
StrideList getStrideVector(const qvArray* a, const std::string& name);

// Dimension ids of a new variable (n elements), truncated without a range check.
std::vector<int> getDimensionIdRow(const qvArray* a, const std::string& name);
// Chunk sizes of a variable (n elements).
std::vector<std::size_t> getChunkSizeRow(const qvArray* a, const std::string& name);
