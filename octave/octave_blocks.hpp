// Data blocks that are Octave arrays, so that numeric data crosses between Octave and the
// library without copies: inputs lend their array to the host, and results the library
// creates are Octave arrays from the start.
#pragma once

#include <octave/oct.h>

#include <cstddef>
#include <memory>
#include <utility>

#include "qvhost/storage.hpp"

namespace octbridge {

// A block that is an Octave array of the class and dimensions of its host array.
class OctaveBlock : public qvDataBlock {
 public:
  virtual qvClassID hostClass() const noexcept = 0;
  virtual dim_vector dims() const = 0;
  // The Octave value over the same memory.
  virtual octave_value value() const = 0;
};

template <class A>
class ArrayBlock final : public OctaveBlock {
 public:
  // Shares the caller's array: only its const data is used, so nothing is copied (asking
  // a shared array for writable data would copy it).
  static std::unique_ptr<ArrayBlock> lend(qvClassID cls, const A& array) {
    return std::unique_ptr<ArrayBlock>(new ArrayBlock(cls, array, Lent{}));
  }
  // A new array that the library writes; it is the only owner of its memory, so taking
  // its writable data copies nothing.
  static std::unique_ptr<ArrayBlock> fresh(qvClassID cls, const dim_vector& dv, bool zeroFilled) {
    return std::unique_ptr<ArrayBlock>(new ArrayBlock(cls, dv, zeroFilled));
  }

  void* data() noexcept override { return data_; }
  qvClassID hostClass() const noexcept override { return cls_; }
  dim_vector dims() const override { return array_.dims(); }
  // Made only once the library is done with the data: an octave_value may turn a 1-by-1
  // array into a scalar of its own.
  octave_value value() const override { return octave_value(array_); }

 private:
  struct Lent {};
  ArrayBlock(qvClassID cls, const A& array, Lent)
      : cls_(cls),
        array_(array),
        data_(const_cast<typename A::element_type*>(std::as_const(array_).data())) {}
  ArrayBlock(qvClassID cls, const dim_vector& dv, bool zeroFilled)
      : cls_(cls),
        array_(zeroFilled ? A(dv, typename A::element_type()) : uninitialised(dv)),
        data_(array_.fortran_vec()) {}

  // Octave value-initialises every element of a new array, a pass over all of its memory
  // (and every first-touch page fault) before the library writes it. An array the
  // library fills completely is made over memory nothing has written yet instead, with
  // the host's advice for large blocks; Octave releases it through the same allocator.
  static A uninitialised(const dim_vector& dv) {
    using T = typename A::element_type;
    const auto n = static_cast<std::size_t>(dv.safe_numel());
    std::allocator<T> allocator;
    T* memory = allocator.allocate(n);
    qvAdviseHugePages(memory, n * sizeof(T));
    Array<T> adopted;
    try {
      adopted = Array<T>(memory, dv);
    } catch (...) {
      allocator.deallocate(memory, n);
      throw;
    }
    return A(adopted);
  }

  qvClassID cls_;
  A array_;
  void* data_;
};

// Lends every numeric and logical block the library asks for as a new Octave array.
class OctaveStorage final : public qvStorageProvider {
 public:
  std::unique_ptr<qvDataBlock> allocate(qvClassID cls, matrix::DimSpan dims, std::size_t bytes,
                                        bool zeroFilled) override;
};

// The Octave block behind a host array, or null when the host owns the data.
const OctaveBlock* octaveBlockOf(const qvArray* a) noexcept;

}  // namespace octbridge
