// Storage an embedding program can lend to the host, so that data blocks move between
// the program and the library without copies:
//  - wrap memory the program owns as a host array (qvWrapExternal);
//  - have new arrays' data blocks allocated by the program (qvScopedStorageProvider).
#pragma once

#include <cstddef>
#include <memory>

#include "qvhost/array.hpp"

// One data block. The host's own blocks are released with qvFree; a lent block keeps
// whatever it needs alive and releases it in its destructor, which must not throw.
class qvDataBlock {
 public:
  virtual ~qvDataBlock() = default;
  virtual void* data() noexcept = 0;
};

class qvStorageProvider {
 public:
  virtual ~qvStorageProvider() = default;
  // Called for every new numeric, char or logical array with the bytes it needs
  // (already zeroed when zeroFilled is true). Return null to let the host allocate.
  virtual std::unique_ptr<qvDataBlock> allocate(qvClassID cls, matrix::DimSpan dims,
                                                std::size_t bytes, bool zeroFilled) = 0;
};

// Installs a provider for the calling thread for the guard's lifetime; nests.
class qvScopedStorageProvider {
 public:
  explicit qvScopedStorageProvider(qvStorageProvider& provider) noexcept;
  ~qvScopedStorageProvider();
  qvScopedStorageProvider(const qvScopedStorageProvider&) = delete;
  qvScopedStorageProvider& operator=(const qvScopedStorageProvider&) = delete;

 private:
  qvStorageProvider* previous_;
};

// A real numeric, char or logical array over a block the caller lends; nothing is copied.
// The block must hold at least numel * qvElementSize(cls) bytes.
qvArrayPtr qvWrapExternal(qvClassID cls, matrix::DimSpan dims, std::unique_ptr<qvDataBlock> block);

// The block behind an array's data, for a program that wants to recognise its own storage.
qvDataBlock* qvGetDataBlock(const qvArray* a) noexcept;

// Asks for transparent huge pages over a large block that nothing has written yet, as the
// host does for its own blocks of 4 MiB and more; a provider can give its blocks the same
// advice. Smaller blocks are left as they are.
void qvAdviseHugePages(void* p, std::size_t bytes) noexcept;
