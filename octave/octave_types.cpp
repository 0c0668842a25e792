#include "octave_types.hpp"

#include <limits>
#include <stdexcept>
#include <tuple>
#include <type_traits>

namespace octbridge {
namespace {

// Host blocks are handed to Octave arrays as they are, so the elements must match byte
// for byte.
template <class A, class Host>
constexpr bool kSameLayout = sizeof(typename A::element_type) == sizeof(Host) &&
                             std::is_trivially_copyable_v<typename A::element_type>;
static_assert([]<class... T>(std::tuple<T...>*) {
  return (kSameLayout<typename OctaveArrayOf<T>::type, T> && ...);
}(static_cast<qvNumericTypes*>(nullptr)));
static_assert(kSameLayout<boolNDArray, bool> && sizeof(bool) == 1);

}  // namespace

qvClassID plainClassOf(const octave_value& v) {
  if (v.issparse() || v.iscomplex()) return qvUNKNOWN_CLASS;
  if (v.is_double_type()) return qvDOUBLE_CLASS;
  if (v.is_single_type()) return qvSINGLE_CLASS;
  if (v.is_int8_type()) return qvINT8_CLASS;
  if (v.is_uint8_type()) return qvUINT8_CLASS;
  if (v.is_int16_type()) return qvINT16_CLASS;
  if (v.is_uint16_type()) return qvUINT16_CLASS;
  if (v.is_int32_type()) return qvINT32_CLASS;
  if (v.is_uint32_type()) return qvUINT32_CLASS;
  if (v.is_int64_type()) return qvINT64_CLASS;
  if (v.is_uint64_type()) return qvUINT64_CLASS;
  if (v.islogical()) return qvLOGICAL_CLASS;
  return qvUNKNOWN_CLASS;
}

const char* hostClassName(qvClassID cls) noexcept {
  switch (cls) {
    case qvCELL_CLASS:
      return "cell";
    case qvSTRUCT_CLASS:
      return "struct";
    case qvLOGICAL_CLASS:
      return "logical";
    case qvCHAR_CLASS:
      return "char";
    case qvVOID_CLASS:
      return "void";
    case qvDOUBLE_CLASS:
      return "double";
    case qvSINGLE_CLASS:
      return "single";
    case qvINT8_CLASS:
      return "int8";
    case qvUINT8_CLASS:
      return "uint8";
    case qvINT16_CLASS:
      return "int16";
    case qvUINT16_CLASS:
      return "uint16";
    case qvINT32_CLASS:
      return "int32";
    case qvUINT32_CLASS:
      return "uint32";
    case qvINT64_CLASS:
      return "int64";
    case qvUINT64_CLASS:
      return "uint64";
    case qvFUNCTION_CLASS:
      return "function_handle";
    case qvOBJECT_CLASS:
      return "object";
    case qvSTRING_CLASS:
      return "string";
    case qvUNKNOWN_CLASS:
      break;
  }
  return "unknown";
}

dim_vector octaveDims(matrix::DimSpan dims) {
  const int n = dims.size() < 2 ? 2 : static_cast<int>(dims.size());
  dim_vector dv = dim_vector::alloc(n);
  for (int k = 0; k < n; ++k) {
    const std::uint64_t extent = static_cast<std::size_t>(k) < dims.size() ? dims[k] : 1;
    if (extent > static_cast<std::uint64_t>(std::numeric_limits<octave_idx_type>::max())) {
      throw std::length_error("array extent too large for Octave");
    }
    dv(k) = static_cast<octave_idx_type>(extent);
  }
  return dv;
}

std::vector<std::uint64_t> hostDims(const dim_vector& dv) {
  std::vector<std::uint64_t> dims(static_cast<std::size_t>(dv.ndims()));
  for (std::size_t k = 0; k < dims.size(); ++k) {
    dims[k] = static_cast<std::uint64_t>(dv(static_cast<int>(k)));
  }
  return dims;
}

}  // namespace octbridge
