#include <utility>

#include "octave_blocks.hpp"
#include "octave_types.hpp"

namespace octbridge {

std::unique_ptr<qvDataBlock> OctaveStorage::allocate(qvClassID cls, matrix::DimSpan dims,
                                                     std::size_t bytes, bool zeroFilled) {
  // Char is UTF-16 in the host and bytes in Octave, so its blocks stay the host's.
  std::unique_ptr<qvDataBlock> block;
  withArrayType(cls, [&](auto kind) {
    using K = decltype(kind);
    const dim_vector dv = octaveDims(dims);
    if (static_cast<std::size_t>(dv.numel()) * sizeof(typename K::Element) != bytes) return;
    block = ArrayBlock<typename K::Array>::fresh(cls, dv, zeroFilled);
  });
  return block;
}

const OctaveBlock* octaveBlockOf(const qvArray* a) noexcept {
  return dynamic_cast<const OctaveBlock*>(qvGetDataBlock(a));
}

}  // namespace octbridge
