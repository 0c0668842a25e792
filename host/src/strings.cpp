// String arrays: a table of shared UTF-16 texts, null for a missing element.
#include "qvhost/strings.hpp"

#include <stdexcept>

#include "internal.hpp"

void qvSharedText::release() noexcept {
  if (refs_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

namespace {

// Every element starts as one shared empty text, so a large array costs one allocation
// until its elements are assigned.
qvArrayPtr createStringArray(qvhost_internal::Shape shape) {
  const std::size_t n = qvhost_internal::elementCount(shape);
  auto block = qvhost_internal::hostBlock(qvhost_internal::byteCount(n, sizeof(qvSharedText*)));
  auto a = qvhost_internal::newHeader(qvSTRING_CLASS, std::move(shape));
  qvhost_internal::attachBlock(*a, std::move(block));
  if (n == 0) return a;
  auto** texts = static_cast<qvSharedText**>(a->data);
  auto* empty = new qvSharedText(std::u16string());
  texts[0] = empty;
  for (std::size_t i = 1; i < n; ++i) {
    empty->addRef();
    texts[i] = empty;
  }
  return a;
}

qvSharedText** stringTable(const qvArray* a) {
  if (!isString(a)) throw std::invalid_argument("string element access on a non-string array");
  return static_cast<qvSharedText**>(a->data);
}

qvSharedText** stringSlot(const qvArray* a, std::size_t i) {
  qvSharedText** table = stringTable(a);
  if (i >= qvGetNumberOfElements(a)) throw std::out_of_range("string element index out of range");
  return table + i;
}

// Stores t (already counted for this slot) and releases what the slot held.
void storeText(qvSharedText** slot, qvSharedText* t) noexcept {
  qvSharedText* old = *slot;
  *slot = t;
  if (old != nullptr) old->release();
}

}  // namespace

qvArrayPtr createStringArray(const std::u16string& text) {
  auto a = createStringArray(qvhost_internal::shapeFromRowsCols(1, 1));
  setStringElement(a.get(), 0, text);
  return a;
}

qvArrayPtr createStringArray(std::size_t ndims, const std::uint64_t* dims) {
  return createStringArray(qvhost_internal::shapeFromDims(matrix::DimSpan(dims, ndims)));
}

qvArrayPtr createStringArray(std::uint64_t m, std::uint64_t n) {
  return createStringArray(qvhost_internal::shapeFromRowsCols(m, n));
}

bool isString(const qvArray* a) noexcept {
  return a != nullptr && qvGetClassID(a) == qvSTRING_CLASS;
}

StringArrayView getString(const qvArray* a) {
  qvSharedText* const* table = stringTable(a);
  return StringArrayView{qvGetNumberOfElements(a), table};
}

void setStringElement(qvArray* a, std::size_t i, std::u16string text) {
  qvSharedText** slot = stringSlot(a, i);
  storeText(slot, new qvSharedText(std::move(text)));
}

void setStringMissing(qvArray* a, std::size_t i) { storeText(stringSlot(a, i), nullptr); }

void shareStringElement(qvArray* a, std::size_t i, const qvArray* from, std::size_t j) {
  qvSharedText** slot = stringSlot(a, i);
  qvSharedText* t = *stringSlot(from, j);
  // Counted before the old text goes, so sharing an element with itself is harmless.
  if (t != nullptr) t->addRef();
  storeText(slot, t);
}
