// Pieces shared by the host's array sources; not part of the public interface.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "qvhost/array.hpp"
#include "qvhost/storage.hpp"

namespace qvhost_internal {

// Normalised extents of a new array. A (rows, cols) shape leaves the list to be built
// on first request, as the host does for arrays made from two extents.
struct Shape {
  std::vector<std::uint64_t> dims;
  std::uint64_t rows = 0;
  std::uint64_t cols = 0;
  bool lazy = false;
};

Shape shapeFromDims(matrix::DimSpan dims);
Shape shapeFromRowsCols(std::uint64_t rows, std::uint64_t cols);

// Element count and byte size of a shape; an impossible size is exhaustion (bad_alloc).
std::size_t elementCount(const Shape& shape);
std::size_t byteCount(std::size_t count, std::size_t elementSize);

// A header of the class and shape with no data block yet.
qvArrayPtr newHeader(qvClassID cls, Shape shape);

// bytes from the host's heap, zero-filled or not, advised for huge pages when large;
// released with qvFree. Exhaustion is bad_alloc.
void* allocateBytes(std::size_t bytes, bool zeroFilled);

// A block of the host's heap, released with qvFree; zero-filled unless the caller writes
// every byte.
std::unique_ptr<qvDataBlock> hostBlock(std::size_t bytes, bool zeroFilled = true);

// The calling thread's provider is asked first; the host allocates when it declines.
std::unique_ptr<qvDataBlock> numericBlock(qvClassID cls, const Shape& shape, std::size_t bytes,
                                          bool zeroFilled);

void attachBlock(qvArray& a, std::unique_ptr<qvDataBlock> block);

// Numeric, char or logical array; zeroFilled selects calloc semantics.
qvArrayPtr createNumeric(Shape shape, qvClassID cls, qvComplexity complexity, bool zeroFilled);

}  // namespace qvhost_internal
