// The one place that ties host classes to Octave array types, and host extents to Octave
// dimensions. Everything else in the bridge is generic over this table.
#pragma once

#include <octave/oct.h>

#include <cstdint>
#include <vector>

#include "qvhost/array.hpp"

namespace octbridge {

// Names one Octave array type; handed to the visitors of withArrayType.
template <class A>
struct Kind {
  using Array = A;
  using Element = typename A::element_type;
};

// Calls f(Kind<A>{}) with the Octave array type of a numeric or logical host class and
// returns true; returns false for every other class.
template <class F>
bool withArrayType(qvClassID cls, F&& f) {
  switch (cls) {
    case qvDOUBLE_CLASS:
      f(Kind<NDArray>{});
      return true;
    case qvSINGLE_CLASS:
      f(Kind<FloatNDArray>{});
      return true;
    case qvINT8_CLASS:
      f(Kind<int8NDArray>{});
      return true;
    case qvUINT8_CLASS:
      f(Kind<uint8NDArray>{});
      return true;
    case qvINT16_CLASS:
      f(Kind<int16NDArray>{});
      return true;
    case qvUINT16_CLASS:
      f(Kind<uint16NDArray>{});
      return true;
    case qvINT32_CLASS:
      f(Kind<int32NDArray>{});
      return true;
    case qvUINT32_CLASS:
      f(Kind<uint32NDArray>{});
      return true;
    case qvINT64_CLASS:
      f(Kind<int64NDArray>{});
      return true;
    case qvUINT64_CLASS:
      f(Kind<uint64NDArray>{});
      return true;
    case qvLOGICAL_CLASS:
      f(Kind<boolNDArray>{});
      return true;
    default:
      return false;
  }
}

// Host class of a full, real numeric or logical Octave value; qvUNKNOWN_CLASS for
// anything else (char, cell, complex, sparse, struct, objects, ...).
qvClassID plainClassOf(const octave_value& v);

// The class name as Octave spells it ("double", "cell", "string", ...).
const char* hostClassName(qvClassID cls) noexcept;

dim_vector octaveDims(matrix::DimSpan dims);
std::vector<std::uint64_t> hostDims(const dim_vector& dv);

}  // namespace octbridge
