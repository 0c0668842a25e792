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

// The Octave array type of a host element type.
template <class T>
struct OctaveArrayOf {
  using type = intNDArray<octave_int<T>>;
};
template <>
struct OctaveArrayOf<double> {
  using type = NDArray;
};
template <>
struct OctaveArrayOf<float> {
  using type = FloatNDArray;
};

// Calls f(Kind<A>{}) with the Octave array type of a numeric or logical host class and
// returns true; returns false for every other class.
template <class F>
bool withArrayType(qvClassID cls, F&& f) {
  if (cls == qvLOGICAL_CLASS) {
    f(Kind<boolNDArray>{});
  } else if (qvIsNumericClassID(cls)) {
    qvVisitNumeric(cls, [&](auto t) { f(Kind<typename OctaveArrayOf<decltype(t)>::type>{}); });
  } else {
    return false;
  }
  return true;
}

// Host class of a full, real numeric or logical Octave value; qvUNKNOWN_CLASS for
// anything else (char, cell, complex, sparse, struct, objects, ...).
qvClassID plainClassOf(const octave_value& v);

// The class name as Octave spells it ("double", "cell", "string", ...).
const char* hostClassName(qvClassID cls) noexcept;

dim_vector octaveDims(matrix::DimSpan dims);
std::vector<std::uint64_t> hostDims(const dim_vector& dv);

}  // namespace octbridge
