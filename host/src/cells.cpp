// Cell arrays: a table of owned element arrays, null for an empty element.
#include <stdexcept>

#include "internal.hpp"

namespace {

qvArray** cellSlot(qvArray* cell, std::size_t i) {
  if (cell == nullptr || qvGetClassID(cell) != qvCELL_CLASS) {
    throw std::invalid_argument("cell element access on an array that is not a cell");
  }
  if (i >= qvGetNumberOfElements(cell)) throw std::out_of_range("cell element index out of range");
  return static_cast<qvArray**>(cell->data) + i;
}

}  // namespace

namespace matrix::detail {

qvArrayPtr do_create_cell(DimSpan dims) {
  auto shape = qvhost_internal::shapeFromDims(dims);
  const std::size_t bytes =
      qvhost_internal::byteCount(qvhost_internal::elementCount(shape), sizeof(qvArray*));
  auto block = qvhost_internal::hostBlock(bytes);  // zero-filled: every element empty
  auto a = qvhost_internal::newHeader(qvCELL_CLASS, std::move(shape));
  qvhost_internal::attachBlock(*a, std::move(block));
  return a;
}

}  // namespace matrix::detail

// An occupied slot gives up its element here too: a cell never leaks what it held.
void qvSetCell(qvArray* cell, std::size_t i, qvArrayPtr elem) {
  qvArray** slot = cellSlot(cell, i);
  qvArrayPtr previous(*slot);
  *slot = elem.release();
}

void qvReplaceCell(qvArray* cell, std::size_t i, qvArrayPtr elem) {
  qvSetCell(cell, i, std::move(elem));
}

const qvArray* qvGetCell(const qvArray* cell, std::size_t i) noexcept {
  if (cell == nullptr || qvGetClassID(cell) != qvCELL_CLASS) return nullptr;
  if (i >= qvGetNumberOfElements(cell)) return nullptr;
  return static_cast<qvArray* const*>(cell->data)[i];
}
