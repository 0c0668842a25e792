// The substitute host's array type and the operations a library may perform on it.
// Arrays are n-dimensional (at least two extents), column-major, reference-counted,
// and own one data block. Numeric, char and logical blocks may live in storage that
// an embedding program lends (see storage.hpp).
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

// Class ids. The ten numeric classes are consecutive, in this exact order, so that
// "is numeric" is one range test and the position in the run selects the element type.
enum qvClassID : int {
  qvUNKNOWN_CLASS = 0,
  qvCELL_CLASS = 1,
  qvSTRUCT_CLASS = 2,
  qvLOGICAL_CLASS = 3,
  qvCHAR_CLASS = 4,
  qvVOID_CLASS = 5,
  qvDOUBLE_CLASS = 6,
  qvSINGLE_CLASS = 7,
  qvINT8_CLASS = 8,
  qvUINT8_CLASS = 9,
  qvINT16_CLASS = 10,
  qvUINT16_CLASS = 11,
  qvINT32_CLASS = 12,
  qvUINT32_CLASS = 13,
  qvINT64_CLASS = 14,
  qvUINT64_CLASS = 15,
  qvFUNCTION_CLASS = 16,
  // Ids above 16 are not kept in the array header; they are resolved out of line.
  qvOBJECT_CLASS = 17,
  qvSTRING_CLASS = 18,
};

enum qvComplexity : int { qvREAL = 0, qvCOMPLEX = 1 };

constexpr bool qvIsNumericClassID(qvClassID c) noexcept {
  return c >= qvDOUBLE_CLASS && c <= qvUINT64_CLASS;
}

// Element types of the numeric classes, in class-id order: the one place that ties a
// numeric class to its C++ type.
using qvNumericTypes = std::tuple<double, float, std::int8_t, std::uint8_t, std::int16_t,
                                  std::uint16_t, std::int32_t, std::uint32_t, std::int64_t,
                                  std::uint64_t>;
static_assert(qvUINT64_CLASS - qvDOUBLE_CLASS + 1 == std::tuple_size_v<qvNumericTypes>);

// Calls f(T{}) with the element type T of numeric class cls and returns its result.
// cls must be numeric.
template <class F>
decltype(auto) qvVisitNumeric(qvClassID cls, F&& f) {
  return [&]<std::size_t... I>(std::index_sequence<I...>) -> decltype(auto) {
    using R = decltype(f(double{}));
    using Call = R (*)(F&);
    static constexpr Call kCalls[] = {[](F& g) -> R {
      return g(std::tuple_element_t<I, qvNumericTypes>{});
    }...};
    return kCalls[cls - qvDOUBLE_CLASS](f);
  }(std::make_index_sequence<std::tuple_size_v<qvNumericTypes>>{});
}

// Bytes per element of a class (char: one UTF-16 code unit; cell, string: one table
// entry); 0 for classes without a data block of their own (struct, function, object).
std::size_t qvElementSize(qvClassID c) noexcept;

class qvDataBlock;
class qvSharedText;

struct qvArray_tag {
  // Header tag kept for ids up to 16; larger ids are stored in extendedClass.
  static constexpr std::uint8_t kExtendedClassTag = 0xFF;

  std::atomic<std::int32_t> refCount{1};
  std::uint8_t classTag = qvUNKNOWN_CLASS;
  qvClassID extendedClass = qvUNKNOWN_CLASS;
  qvComplexity complexity = qvREAL;
  // Arrays made from (rows, cols) keep only those two until someone asks for the list.
  mutable bool dimsIncomplete = false;
  std::uint64_t rows = 0;
  std::uint64_t cols = 0;
  mutable std::vector<std::uint64_t> dims;
  // Real data block (cell: table of element pointers; string: table of text pointers).
  void* data = nullptr;
  std::unique_ptr<qvDataBlock> block;
  // Imaginary part of complex arrays, same size as the real block.
  std::unique_ptr<qvDataBlock> imagBlock;

  qvClassID _get_class_id_non_trivial() const noexcept;
  void _complete_opaque_dimensions() const;
};
using qvArray = qvArray_tag;

// Releasing never throws: a shared array loses one reference, the last reference destroys it.
struct qvArrayDeleter {
  void operator()(qvArray* a) const noexcept;
};
using qvArrayPtr = std::unique_ptr<qvArray, qvArrayDeleter>;

// Adds a reference and returns a handle that owns it.
qvArrayPtr qvShareArray(const qvArray* a) noexcept;

// ---- queries -------------------------------------------------------------
inline qvClassID qvGetClassID(const qvArray* a) noexcept {
  return a->classTag > 16 ? a->_get_class_id_non_trivial() : static_cast<qvClassID>(a->classTag);
}
std::size_t qvGetNumberOfElements(const qvArray* a) noexcept;
const std::uint64_t* qvGetDimensions(const qvArray* a);
std::size_t qvGetNumberOfDimensions(const qvArray* a);
inline void* qvGetData(const qvArray* a) noexcept { return a->data; }
void* qvGetImagData(const qvArray* a) noexcept;
bool qvIsEmpty(const qvArray* a) noexcept;
inline bool qvIsComplex(const qvArray* a) noexcept { return a->complexity == qvCOMPLEX; }
bool qvIsNumeric(const qvArray* a) noexcept;
bool qvIsCharVector(const qvArray* a) noexcept;
bool qvIsLogicalScalar(const qvArray* a) noexcept;
bool* qvGetLogicals(const qvArray* a) noexcept;

// ---- cells -----------------------------------------------------------------
// The cell takes ownership of elem; a null elem stands for an empty element.
void qvSetCell(qvArray* cell, std::size_t i, qvArrayPtr elem);
// As qvSetCell, releasing the element it replaces.
void qvReplaceCell(qvArray* cell, std::size_t i, qvArrayPtr elem);
const qvArray* qvGetCell(const qvArray* cell, std::size_t i) noexcept;

// ---- memory and text -------------------------------------------------------
void* qvCalloc(std::size_t n, std::size_t size);
void qvFree(void* p) noexcept;
// Newly allocated NUL-terminated narrow copy (low byte of each code unit) of a char
// array, freed with qvFree; null when the array is not of class char.
char* qvArrayToString(const qvArray* a);

namespace matrix {

using DimSpan = std::span<const std::uint64_t>;

// 1-by-n char row, one character per byte (bytes above 0x7F widened as unsigned).
qvArrayPtr create(const char* text, std::size_t n);
// 1-by-n char row holding the n code units.
qvArrayPtr create(const char16_t* text, std::size_t n);
void destroyArray(qvArray* a) noexcept;

class ustring_converter;
std::string get_string(const qvArray* a, const ustring_converter& converter);
std::u16string get_ustring(const qvArray* a);

namespace detail {
// Zero-filled real or complex array of a numeric, char or logical class.
qvArrayPtr do_create_numeric(DimSpan dims, qvClassID cls, qvComplexity complexity);
// Same without filling: the caller writes every element.
qvArrayPtr do_create_uninitnumeric(DimSpan dims, qvClassID cls, qvComplexity complexity);
// Cell whose elements are all empty.
qvArrayPtr do_create_cell(DimSpan dims);
}  // namespace detail
}  // namespace matrix

// Arrays of classes the library never makes, so that embedding programs and tests can
// hand it anything a host can hold: struct (no data block), function handle, object.
qvArrayPtr qvCreateOpaque(matrix::DimSpan dims, qvClassID cls);
