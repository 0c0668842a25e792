// __ncdataset_decode__: the CF decoding of ncdataset's reads in one pass over the stored
// values, so that a decoded read costs the stored block, the result and nothing more.
#include <octave/oct.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <type_traits>
#include <vector>

namespace {

// Attribute values of any class, as the type V of the stored values.
template <typename V>
struct Rules {
  std::vector<V> missing;
  std::optional<V> lo;       // elements below are missing
  std::optional<V> hi;       // elements above are missing
  bool none = false;         // the valid range is empty: every element is missing
};

// Element k of an Octave integer array of class T, or nothing when A is of another class.
template <typename T>
std::optional<T> elementOf(const octave_value& a, octave_idx_type k) {
  if constexpr (std::is_same_v<T, int8_t>) { if (a.is_int8_type()) return a.int8_array_value()(k).value(); }
  if constexpr (std::is_same_v<T, uint8_t>) { if (a.is_uint8_type()) return a.uint8_array_value()(k).value(); }
  if constexpr (std::is_same_v<T, int16_t>) { if (a.is_int16_type()) return a.int16_array_value()(k).value(); }
  if constexpr (std::is_same_v<T, uint16_t>) { if (a.is_uint16_type()) return a.uint16_array_value()(k).value(); }
  if constexpr (std::is_same_v<T, int32_t>) { if (a.is_int32_type()) return a.int32_array_value()(k).value(); }
  if constexpr (std::is_same_v<T, uint32_t>) { if (a.is_uint32_type()) return a.uint32_array_value()(k).value(); }
  if constexpr (std::is_same_v<T, int64_t>) { if (a.is_int64_type()) return a.int64_array_value()(k).value(); }
  if constexpr (std::is_same_v<T, uint64_t>) { if (a.is_uint64_type()) return a.uint64_array_value()(k).value(); }
  return std::nullopt;
}

// Element k of attribute A as a value of V. An attribute of the signed/unsigned twin of
// an integer V (a _FillValue of a variable read as unsigned) is taken bit for bit.
template <typename V>
std::optional<long double> attributeValue(const octave_value& a, octave_idx_type k) {
  if constexpr (std::is_integral_v<V>) {
    using Twin = std::conditional_t<std::is_signed_v<V>, std::make_unsigned_t<V>,
                                    std::make_signed_t<V>>;
    if (const auto t = elementOf<Twin>(a, k)) return static_cast<long double>(static_cast<V>(*t));
  }
  if (a.is_int64_type()) return static_cast<long double>(a.int64_array_value()(k).value());
  if (a.is_uint64_type()) return static_cast<long double>(a.uint64_array_value()(k).value());
  if (a.isnumeric() || a.islogical()) return static_cast<long double>(a.array_value()(k));
  return std::nullopt;
}

template <typename V>
Rules<V> makeRules(const Cell& missing, const octave_value& vmin, const octave_value& vmax) {
  Rules<V> r;
  constexpr long double lowest = std::numeric_limits<V>::lowest();
  constexpr long double highest = std::numeric_limits<V>::max();
  for (octave_idx_type c = 0; c < missing.numel(); ++c) {
    const octave_value& a = missing(c);
    for (octave_idx_type k = 0; k < a.numel(); ++k) {
      const auto x = attributeValue<V>(a, k);
      if (!x || std::isnan(*x)) continue;
      // Floating-point values are taken as the variable's type holds them.
      if (std::is_floating_point_v<V> ||
          (*x >= lowest && *x <= highest && static_cast<long double>(static_cast<V>(*x)) == *x))
        r.missing.push_back(static_cast<V>(*x));
    }
  }
  if (!vmin.isempty()) {
    if (auto x = attributeValue<V>(vmin, 0); x && !std::isnan(*x)) {
      long double b = std::is_integral_v<V> ? std::ceil(*x) : *x;
      if (b > highest) r.none = true;
      else if (b > lowest) r.lo = static_cast<V>(b);
    }
  }
  if (!vmax.isempty()) {
    if (auto x = attributeValue<V>(vmax, 0); x && !std::isnan(*x)) {
      long double b = std::is_integral_v<V> ? std::floor(*x) : *x;
      if (b < lowest) r.none = true;
      else if (b < highest) r.hi = static_cast<V>(b);
    }
  }
  return r;
}

template <typename V>
inline bool isMissing(V v, const Rules<V>& r, const V* miss, std::size_t nmiss) {
  if constexpr (std::is_floating_point_v<V>) {
    if (std::isnan(v)) return true;
  }
  for (std::size_t j = 0; j < nmiss; ++j)
    if (v == miss[j]) return true;
  return (r.lo && v < *r.lo) || (r.hi && v > *r.hi);
}

// One pass: OUT[k] is IN[k] as O, scaled when SCALED, NaN (floating O) where missing;
// MASK, when given, marks the missing elements.
template <typename V, typename O, bool Scaled>
void decodeLoop(const V* in, O* out, bool* mask, octave_idx_type n, const Rules<V>& r,
                O scale, O offset) {
  const V* miss = r.missing.data();
  const std::size_t nmiss = r.missing.size();
  for (octave_idx_type k = 0; k < n; ++k) {
    const V v = in[k];
    const bool m = r.none || isMissing(v, r, miss, nmiss);
    if (mask) mask[k] = m;
    if constexpr (std::is_floating_point_v<O>) {
      O x = static_cast<O>(v);
      if constexpr (Scaled) x = x * scale + offset;
      out[k] = m ? std::numeric_limits<O>::quiet_NaN() : x;
    } else {
      out[k] = static_cast<O>(v);
    }
  }
}

template <typename O>
O packing(const octave_value& a, O absent) {
  return a.isempty() ? absent : static_cast<O>(a.double_value());
}

template <typename ArrayO, typename V, typename O>
octave_value decodeTo(const V* in, const dim_vector& dims, bool* mask, const Rules<V>& r,
                      const octave_value& scale, const octave_value& offset, bool scaled) {
  ArrayO out(dims);
  O* dst = reinterpret_cast<O*>(out.fortran_vec());
  const octave_idx_type n = dims.numel();
  if (scaled)
    decodeLoop<V, O, true>(in, dst, mask, n, r, packing<O>(scale, 1), packing<O>(offset, 0));
  else
    decodeLoop<V, O, false>(in, dst, mask, n, r, O(1), O(0));
  return octave_value(out);
}

// V: the type of the values as decoded (unsigned where _Unsigned says so); the stored
// array holds them bit for bit. ArrayV: the Octave array type of V.
template <typename V, typename ArrayV>
octave_value_list decode(const octave_value& stored, const octave_value_list& args, int nargout) {
  const dim_vector dims = stored.dims();
  const octave_idx_type n = dims.numel();
  const V* in = static_cast<const V*>(stored.mex_get_data());
  const Rules<V> rules = makeRules<V>(args(2).cell_value(), args(3), args(4));
  const octave_value& scale = args(5);
  const octave_value& offset = args(6);
  const bool scaled = !scale.isempty() || !offset.isempty();

  boolNDArray mask;
  bool* maskData = nullptr;
  if (nargout > 1) {
    mask = boolNDArray(dims);
    maskData = mask.fortran_vec();
  }
  octave_value result;
  const bool single = (scale.isempty() || scale.is_single_type()) &&
                      (offset.isempty() || offset.is_single_type()) &&
                      !std::is_same_v<V, double>;
  if (scaled && single)
    result = decodeTo<FloatNDArray, V, float>(in, dims, maskData, rules, scale, offset, true);
  else if (scaled)
    result = decodeTo<NDArray, V, double>(in, dims, maskData, rules, scale, offset, true);
  else if constexpr (std::is_floating_point_v<V>)
    result = decodeTo<ArrayV, V, V>(in, dims, maskData, rules, scale, offset, false);
  else {
    // An integer result keeps its values: only the mask is computed, and the stored
    // array itself is the result unless it is reinterpreted as unsigned.
    if (maskData) {
      const V* miss = rules.missing.data();
      for (octave_idx_type k = 0; k < n; ++k)
        maskData[k] = rules.none || isMissing(in[k], rules, miss, rules.missing.size());
    }
    if (args(1).bool_value()) {
      ArrayV out(dims);
      std::memcpy(static_cast<void*>(out.fortran_vec()), in, static_cast<std::size_t>(n) * sizeof(V));
      result = octave_value(out);
    } else {
      result = stored;
    }
  }
  octave_value_list out(nargout > 1 ? 2 : 1);
  out(0) = result;
  if (nargout > 1) out(1) = octave_value(mask);
  return out;
}

template <typename S, typename U, typename ArrayS, typename ArrayU>
octave_value_list decodeInteger(const octave_value& stored, const octave_value_list& args,
                                int nargout) {
  if (args(1).bool_value()) return decode<U, ArrayU>(stored, args, nargout);
  return decode<S, ArrayS>(stored, args, nargout);
}

}  // namespace

// clang-format off
DEFUN_DLD(__ncdataset_decode__, args, nargout,
R"(-- [X, MISSING] = __ncdataset_decode__ (STORED, UNSIGNED, MISSING_VALUES, VALID_MIN, VALID_MAX, SCALE, OFFSET)

Internal to ncdataset: CF decoding of the values STORED as read.  UNSIGNED reads
signed integers as their unsigned twins; MISSING_VALUES is a cell of arrays of
values that mark missing elements; VALID_MIN and VALID_MAX bound the valid values;
SCALE and OFFSET unpack.  Empty arguments are absent attributes.)")
// clang-format on
{
  if (args.length() != 7 || !args(2).iscell())
    error_with_id("ncdataset:badArgument", "__ncdataset_decode__: wrong arguments");
  const octave_value x = args(0).is_range() ? octave_value(args(0).array_value()) : args(0);
  if (x.iscomplex() || !(x.isnumeric()))
    error_with_id("ncdataset:badArgument", "__ncdataset_decode__: STORED must be real numeric");
  if (x.is_double_type()) return decode<double, NDArray>(x, args, nargout);
  if (x.is_single_type()) return decode<float, FloatNDArray>(x, args, nargout);
  if (x.is_int8_type() || x.is_uint8_type()) {
    if (x.is_uint8_type()) return decode<uint8_t, uint8NDArray>(x, args, nargout);
    return decodeInteger<int8_t, uint8_t, int8NDArray, uint8NDArray>(x, args, nargout);
  }
  if (x.is_int16_type()) return decodeInteger<int16_t, uint16_t, int16NDArray, uint16NDArray>(x, args, nargout);
  if (x.is_uint16_type()) return decode<uint16_t, uint16NDArray>(x, args, nargout);
  if (x.is_int32_type()) return decodeInteger<int32_t, uint32_t, int32NDArray, uint32NDArray>(x, args, nargout);
  if (x.is_uint32_type()) return decode<uint32_t, uint32NDArray>(x, args, nargout);
  if (x.is_int64_type()) return decodeInteger<int64_t, uint64_t, int64NDArray, uint64NDArray>(x, args, nargout);
  if (x.is_uint64_type()) return decode<uint64_t, uint64NDArray>(x, args, nargout);
  error_with_id("ncdataset:badArgument", "__ncdataset_decode__: STORED must be real numeric");
}
