// The host allocator: zero-filled blocks, released with qvFree.
#include <cstdlib>
#include <new>

#include "qvhost/array.hpp"

void* qvCalloc(std::size_t n, std::size_t size) {
  // A request for nothing still yields a distinct pointer the caller may free.
  if (n == 0 || size == 0) {
    n = 1;
    size = 1;
  }
  std::size_t bytes = 0;
  if (__builtin_mul_overflow(n, size, &bytes)) throw std::bad_alloc();
  void* p = std::calloc(n, size);
  if (p == nullptr) throw std::bad_alloc();
  return p;
}

void qvFree(void* p) noexcept { std::free(p); }
