// START, COUNT and STRIDE vectors, dimension-id rows and chunk-size rows: host arrays in
// host order (fastest dimension first) to native vectors in netCDF order (slowest first).
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "qvhost/array.hpp"

// START and COUNT: whole numbers from 0; argumentIsEmpty, argumentHasBadDatatype,
// indexArgumentNotFinite, or a Boost overflow for values outside size_t.
std::vector<std::size_t> getIndexVector(const qvArray* a, const std::string& name);
// STRIDE: as above with signed values.
std::vector<std::ptrdiff_t> getStrideVector(const qvArray* a, const std::string& name);

// Dimension ids of a new variable (n elements), truncated without a range check.
std::vector<int> getDimensionIdRow(const qvArray* a, const std::string& name);
// Chunk sizes of a variable (n elements).
std::vector<std::size_t> getChunkSizeRow(const qvArray* a, const std::string& name);
