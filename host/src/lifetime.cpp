// Reference counting and destruction of host arrays.
#include "internal.hpp"
#include "qvhost/strings.hpp"

void qvArrayDeleter::operator()(qvArray* a) const noexcept {
  if (a == nullptr) return;
  // One atomic step decides who holds the last reference, so concurrent releases of a
  // shared array neither leak it nor destroy it twice.
  if (a->refCount.fetch_sub(1, std::memory_order_acq_rel) == 1) matrix::destroyArray(a);
}

qvArrayPtr qvShareArray(const qvArray* a) noexcept {
  if (a == nullptr) return qvArrayPtr();
  auto* shared = const_cast<qvArray*>(a);
  shared->refCount.fetch_add(1, std::memory_order_relaxed);
  return qvArrayPtr(shared);
}

namespace matrix {

void destroyArray(qvArray* a) noexcept {
  if (a == nullptr) return;
  const std::size_t n = a->data != nullptr ? qvGetNumberOfElements(a) : 0;
  switch (qvGetClassID(a)) {
    case qvCELL_CLASS: {
      auto** elements = static_cast<qvArray**>(a->data);
      for (std::size_t i = 0; i < n; ++i) qvArrayDeleter()(elements[i]);
      break;
    }
    case qvSTRUCT_CLASS: {
      auto** values = static_cast<qvArray**>(a->data);
      for (std::size_t i = 0; i < n * a->fieldNames.size(); ++i) qvArrayDeleter()(values[i]);
      break;
    }
    case qvSTRING_CLASS: {
      auto** texts = static_cast<qvSharedText**>(a->data);
      for (std::size_t i = 0; i < n; ++i) {
        if (texts[i] != nullptr) texts[i]->release();
      }
      break;
    }
    default:
      break;
  }
  delete a;  // the blocks' destructors free the storage
}

}  // namespace matrix
