// Data blocks: the host's own, and storage lent by an embedding program.
#include <new>
#include <stdexcept>

#include "internal.hpp"

namespace {

class HostBlock final : public qvDataBlock {
 public:
  explicit HostBlock(void* p) noexcept : p_(p) {}
  ~HostBlock() override { qvFree(p_); }
  HostBlock(const HostBlock&) = delete;
  HostBlock& operator=(const HostBlock&) = delete;
  void* data() noexcept override { return p_; }

 private:
  void* p_;
};

thread_local qvStorageProvider* currentProvider = nullptr;

bool holdsPlainData(qvClassID cls) noexcept {
  return qvIsNumericClassID(cls) || cls == qvCHAR_CLASS || cls == qvLOGICAL_CLASS;
}

}  // namespace

qvScopedStorageProvider::qvScopedStorageProvider(qvStorageProvider& provider) noexcept
    : previous_(currentProvider) {
  currentProvider = &provider;
}

qvScopedStorageProvider::~qvScopedStorageProvider() { currentProvider = previous_; }

namespace qvhost_internal {

std::unique_ptr<qvDataBlock> hostBlock(std::size_t bytes, bool zeroFilled) {
  void* p = allocateBytes(bytes, zeroFilled);
  try {
    return std::make_unique<HostBlock>(p);
  } catch (...) {
    qvFree(p);
    throw;
  }
}

std::unique_ptr<qvDataBlock> numericBlock(qvClassID cls, const Shape& shape, std::size_t bytes,
                                          bool zeroFilled) {
  if (currentProvider != nullptr) {
    const std::uint64_t twoD[2] = {shape.rows, shape.cols};
    const matrix::DimSpan dims = shape.lazy ? matrix::DimSpan(twoD) : matrix::DimSpan(shape.dims);
    auto block = currentProvider->allocate(cls, dims, bytes, zeroFilled);
    if (block) {
      // A block without memory would be written through by the caller.
      if (bytes != 0 && block->data() == nullptr) throw std::bad_alloc();
      return block;
    }
  }
  return hostBlock(bytes, zeroFilled);
}

void attachBlock(qvArray& a, std::unique_ptr<qvDataBlock> block) {
  a.data = block ? block->data() : nullptr;
  a.block = std::move(block);
}

}  // namespace qvhost_internal

qvArrayPtr qvWrapExternal(qvClassID cls, matrix::DimSpan dims, std::unique_ptr<qvDataBlock> block) {
  if (!holdsPlainData(cls)) {
    throw std::invalid_argument("qvWrapExternal: only numeric, char and logical data can be lent");
  }
  if (!block) throw std::invalid_argument("qvWrapExternal: no block to wrap");
  auto shape = qvhost_internal::shapeFromDims(dims);
  const std::size_t bytes =
      qvhost_internal::byteCount(qvhost_internal::elementCount(shape), qvElementSize(cls));
  if (bytes != 0 && block->data() == nullptr) {
    throw std::invalid_argument("qvWrapExternal: the block has no memory");
  }
  auto a = qvhost_internal::newHeader(cls, std::move(shape));
  qvhost_internal::attachBlock(*a, std::move(block));
  return a;
}

qvDataBlock* qvGetDataBlock(const qvArray* a) noexcept { return a->block.get(); }
