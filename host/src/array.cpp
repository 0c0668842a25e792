// Class and shape queries of host arrays.
#include <cmath>

#include "internal.hpp"
#include "qvhost/strings.hpp"

std::size_t qvElementSize(qvClassID c) noexcept {
  switch (c) {
    case qvDOUBLE_CLASS:
    case qvINT64_CLASS:
    case qvUINT64_CLASS:
      return 8;
    case qvSINGLE_CLASS:
    case qvINT32_CLASS:
    case qvUINT32_CLASS:
      return 4;
    case qvINT16_CLASS:
    case qvUINT16_CLASS:
    case qvCHAR_CLASS:
      return 2;
    case qvINT8_CLASS:
    case qvUINT8_CLASS:
    case qvLOGICAL_CLASS:
      return 1;
    case qvCELL_CLASS:
      return sizeof(qvArray*);
    case qvSTRING_CLASS:
      return sizeof(qvSharedText*);
    default:
      return 0;
  }
}

qvClassID qvArray_tag::_get_class_id_non_trivial() const noexcept {
  // Tags between 17 and 254 are never written; treat them as unknown rather than guess.
  return classTag == kExtendedClassTag ? extendedClass : qvUNKNOWN_CLASS;
}

void qvArray_tag::_complete_opaque_dimensions() const {
  if (!dimsIncomplete) return;
  dims = {rows, cols};
  dimsIncomplete = false;
}

namespace {
// Dimension count without building a deferred list: deferred arrays are plain 2-D.
std::size_t dimensionCount(const qvArray* a) noexcept {
  return a->dimsIncomplete ? 2 : a->dims.size();
}
}  // namespace

std::size_t qvGetNumberOfElements(const qvArray* a) noexcept {
  if (a->dimsIncomplete || a->dims.size() == 2) return static_cast<std::size_t>(a->rows * a->cols);
  std::uint64_t n = 1;
  for (std::uint64_t d : a->dims) n *= d;
  return static_cast<std::size_t>(n);
}

const std::uint64_t* qvGetDimensions(const qvArray* a) {
  a->_complete_opaque_dimensions();
  return a->dims.data();
}

std::size_t qvGetNumberOfDimensions(const qvArray* a) {
  a->_complete_opaque_dimensions();
  return a->dims.size();
}

void* qvGetImagData(const qvArray* a) noexcept {
  return a->imagBlock ? a->imagBlock->data() : nullptr;
}

bool qvIsEmpty(const qvArray* a) noexcept { return qvGetNumberOfElements(a) == 0; }

bool qvIsNumeric(const qvArray* a) noexcept { return qvIsNumericClassID(qvGetClassID(a)); }

bool qvIsCharVector(const qvArray* a) noexcept {
  return qvGetClassID(a) == qvCHAR_CLASS && dimensionCount(a) == 2 && a->rows == 1;
}

bool qvIsLogicalScalar(const qvArray* a) noexcept {
  return qvGetClassID(a) == qvLOGICAL_CLASS && qvGetNumberOfElements(a) == 1;
}

bool* qvGetLogicals(const qvArray* a) noexcept {
  return qvGetClassID(a) == qvLOGICAL_CLASS ? static_cast<bool*>(a->data) : nullptr;
}


