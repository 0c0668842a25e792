// Creation of host arrays: shapes, numeric/char/logical arrays, char rows, opaque values.
//
// Every array that has a data block gets a real, freeable one, even when it holds no
// elements: a zero-size block is a valid pointer that nobody writes through.
#include <new>
#include <stdexcept>

#include "internal.hpp"

namespace qvhost_internal {

Shape shapeFromDims(matrix::DimSpan dims) {
  Shape s;
  s.dims.assign(dims.begin(), dims.end());
  while (s.dims.size() < 2) s.dims.push_back(1);
  // Trailing singleton extents beyond the second carry no information.
  while (s.dims.size() > 2 && s.dims.back() == 1) s.dims.pop_back();
  s.rows = s.dims[0];
  s.cols = 1;
  for (std::size_t k = 1; k < s.dims.size(); ++k) {
    if (s.dims[k] == 0) {
      s.cols = 0;
      return s;
    }
  }
  for (std::size_t k = 1; k < s.dims.size(); ++k) {
    if (__builtin_mul_overflow(s.cols, s.dims[k], &s.cols)) throw std::bad_alloc();
  }
  return s;
}

Shape shapeFromRowsCols(std::uint64_t rows, std::uint64_t cols) {
  Shape s;
  s.rows = rows;
  s.cols = cols;
  s.lazy = true;
  return s;
}

std::size_t elementCount(const Shape& shape) {
  std::uint64_t n = 0;
  static_assert(sizeof(std::size_t) == sizeof(std::uint64_t), "64-bit hosts only");
  if (__builtin_mul_overflow(shape.rows, shape.cols, &n)) throw std::bad_alloc();
  return static_cast<std::size_t>(n);
}

std::size_t byteCount(std::size_t count, std::size_t elementSize) {
  std::size_t bytes = 0;
  if (__builtin_mul_overflow(count, elementSize, &bytes)) throw std::bad_alloc();
  return bytes;
}

qvArrayPtr newHeader(qvClassID cls, Shape shape) {
  qvArrayPtr a(new qvArray);
  if (static_cast<int>(cls) <= 16) {
    a->classTag = static_cast<std::uint8_t>(cls);
  } else {
    a->classTag = qvArray::kExtendedClassTag;
    a->extendedClass = cls;
  }
  a->rows = shape.rows;
  a->cols = shape.cols;
  a->dimsIncomplete = shape.lazy;
  a->dims = std::move(shape.dims);
  return a;
}

qvArrayPtr createNumeric(Shape shape, qvClassID cls, qvComplexity complexity, bool zeroFilled) {
  if (!qvIsNumericClassID(cls) && cls != qvCHAR_CLASS && cls != qvLOGICAL_CLASS) {
    throw std::invalid_argument("numeric array creation: class is not numeric, char or logical");
  }
  const std::size_t bytes = byteCount(elementCount(shape), qvElementSize(cls));
  auto block = numericBlock(cls, shape, bytes, zeroFilled);
  std::unique_ptr<qvDataBlock> imag;
  if (complexity == qvCOMPLEX) imag = hostBlock(bytes, zeroFilled);
  auto a = newHeader(cls, std::move(shape));
  a->complexity = complexity;
  attachBlock(*a, std::move(block));
  a->imagBlock = std::move(imag);
  return a;
}

}  // namespace qvhost_internal

namespace matrix {

qvArrayPtr create(const char* text, std::size_t n) {
  auto a = qvhost_internal::createNumeric(qvhost_internal::shapeFromRowsCols(1, n), qvCHAR_CLASS,
                                          qvREAL, false);
  auto* units = static_cast<char16_t*>(a->data);
  for (std::size_t i = 0; i < n; ++i) units[i] = static_cast<unsigned char>(text[i]);
  return a;
}

qvArrayPtr create(const char16_t* text, std::size_t n) {
  auto a = qvhost_internal::createNumeric(qvhost_internal::shapeFromRowsCols(1, n), qvCHAR_CLASS,
                                          qvREAL, false);
  auto* units = static_cast<char16_t*>(a->data);
  for (std::size_t i = 0; i < n; ++i) units[i] = text[i];
  return a;
}

namespace detail {

qvArrayPtr do_create_numeric(DimSpan dims, qvClassID cls, qvComplexity complexity) {
  return qvhost_internal::createNumeric(qvhost_internal::shapeFromDims(dims), cls, complexity,
                                        true);
}

qvArrayPtr do_create_uninitnumeric(DimSpan dims, qvClassID cls, qvComplexity complexity) {
  return qvhost_internal::createNumeric(qvhost_internal::shapeFromDims(dims), cls, complexity,
                                        false);
}

}  // namespace detail
}  // namespace matrix

qvArrayPtr qvCreateOpaque(matrix::DimSpan dims, qvClassID cls) {
  if (cls != qvSTRUCT_CLASS && cls != qvFUNCTION_CLASS && cls != qvOBJECT_CLASS) {
    throw std::invalid_argument("qvCreateOpaque: class must be struct, function or object");
  }
  auto shape = qvhost_internal::shapeFromDims(dims);
  qvhost_internal::elementCount(shape);  // the same size limits as arrays with data
  return qvhost_internal::newHeader(cls, std::move(shape));
}
