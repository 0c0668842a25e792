// Struct arrays with named fields: a table of owned arrays, element-major (all fields of
// element 0, then of element 1, ...), null for an empty field.
#include <algorithm>
#include <stdexcept>

#include "internal.hpp"

namespace {

bool isStructWithFields(const qvArray* s) noexcept {
  return s != nullptr && qvGetClassID(s) == qvSTRUCT_CLASS && s->data != nullptr;
}

}  // namespace

qvArrayPtr qvCreateStruct(matrix::DimSpan dims, std::vector<std::string> fieldNames) {
  for (std::size_t k = 0; k < fieldNames.size(); ++k) {
    if (std::find(fieldNames.begin(), fieldNames.begin() + static_cast<std::ptrdiff_t>(k),
                  fieldNames[k]) != fieldNames.begin() + static_cast<std::ptrdiff_t>(k)) {
      throw std::invalid_argument("qvCreateStruct: duplicate field name " + fieldNames[k]);
    }
  }
  auto shape = qvhost_internal::shapeFromDims(dims);
  const std::size_t slots =
      qvhost_internal::byteCount(qvhost_internal::elementCount(shape), fieldNames.size());
  auto block = qvhost_internal::hostBlock(qvhost_internal::byteCount(slots, sizeof(qvArray*)));
  auto a = qvhost_internal::newHeader(qvSTRUCT_CLASS, std::move(shape));
  qvhost_internal::attachBlock(*a, std::move(block));
  a->fieldNames = std::move(fieldNames);
  return a;
}

std::size_t qvGetNumberOfFields(const qvArray* s) noexcept {
  return isStructWithFields(s) ? s->fieldNames.size() : 0;
}

const char* qvGetFieldNameByNumber(const qvArray* s, std::size_t k) noexcept {
  if (!isStructWithFields(s) || k >= s->fieldNames.size()) return nullptr;
  return s->fieldNames[k].c_str();
}

const qvArray* qvGetFieldByNumber(const qvArray* s, std::size_t i, std::size_t k) noexcept {
  if (!isStructWithFields(s) || k >= s->fieldNames.size() || i >= qvGetNumberOfElements(s)) {
    return nullptr;
  }
  return static_cast<qvArray* const*>(s->data)[i * s->fieldNames.size() + k];
}

void qvSetFieldByNumber(qvArray* s, std::size_t i, std::size_t k, qvArrayPtr value) {
  if (!isStructWithFields(s)) throw std::invalid_argument("field access on a non-struct");
  if (k >= s->fieldNames.size() || i >= qvGetNumberOfElements(s)) {
    throw std::out_of_range("struct field index out of range");
  }
  qvArray** slot = static_cast<qvArray**>(s->data) + i * s->fieldNames.size() + k;
  qvArrayPtr previous(*slot);
  *slot = value.release();
}
