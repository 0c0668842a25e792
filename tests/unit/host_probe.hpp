// A lent data block that records its destruction, so tests can see when an array dies.
#pragma once

#include <memory>
#include <vector>

#include "qvhost/qvhost.hpp"

class ProbeBlock final : public qvDataBlock {
 public:
  ProbeBlock(std::size_t bytes, int* destroyed)
      : bytes_(bytes == 0 ? 1 : bytes), destroyed_(destroyed) {}
  ~ProbeBlock() override {
    if (destroyed_ != nullptr) ++*destroyed_;
  }
  void* data() noexcept override { return bytes_.data(); }

 private:
  std::vector<unsigned char> bytes_;
  int* destroyed_;
};

// A 1-by-1 double array whose destruction increments *destroyed.
inline qvArrayPtr probeArray(int* destroyed) {
  const std::uint64_t dims[] = {1, 1};
  return qvWrapExternal(qvDOUBLE_CLASS, dims,
                        std::make_unique<ProbeBlock>(sizeof(double), destroyed));
}
