// The host allocator: zero-filled blocks, released with qvFree. Data blocks that the
// caller fills completely come from the same heap without the zeroing.
#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>
#include <new>

#include "internal.hpp"

namespace {

// A fresh block is faulted in when it is first written: with 4 KiB pages the faults of a
// large read result cost more than the read itself. Large blocks therefore ask for
// transparent huge pages, as numpy does for its arrays; only the 2 MiB-aligned interior
// of a block can be backed by them.
constexpr std::uintptr_t kHugePageBytes = std::uintptr_t{2} << 20;
constexpr std::size_t kHugePagesFrom = std::size_t{4} << 20;

}  // namespace

void qvAdviseHugePages(void* p, std::size_t bytes) noexcept {
  if (p == nullptr || bytes < kHugePagesFrom) return;
  const auto address = reinterpret_cast<std::uintptr_t>(p);
  const std::uintptr_t begin = (address + kHugePageBytes - 1) & ~(kHugePageBytes - 1);
  const std::uintptr_t end = (address + bytes) & ~(kHugePageBytes - 1);
  // Only advice: where the kernel declines, the block keeps ordinary pages.
  if (end > begin) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
}

namespace qvhost_internal {

void* allocateBytes(std::size_t bytes, bool zeroFilled) {
  // A request for nothing still yields a distinct pointer the caller may free.
  if (bytes == 0) bytes = 1;
  // calloc does not touch memory that comes fresh from the kernel, so the advice below
  // still precedes the first write.
  void* p = zeroFilled ? std::calloc(bytes, 1) : std::malloc(bytes);
  if (p == nullptr) throw std::bad_alloc();
  qvAdviseHugePages(p, bytes);
  return p;
}

}  // namespace qvhost_internal

void* qvCalloc(std::size_t n, std::size_t size) {
  std::size_t bytes = 0;
  if (__builtin_mul_overflow(n, size, &bytes)) throw std::bad_alloc();
  return qvhost_internal::allocateBytes(bytes, true);
}

void qvFree(void* p) noexcept { std::free(p); }
