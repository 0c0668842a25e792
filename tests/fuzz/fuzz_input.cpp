// Host arrays from fuzz input: every class, shape and size a host can pass, with ids and
// arrays that earlier calls of the same input returned. Any byte string reads as arrays.
#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

#include "fuzz.hpp"
#include "qvhost/strings.hpp"

namespace fuzz {

namespace {

// What an input array is: an id an earlier call returned, a small whole number, a special
// value (NaN, infinities, range limits ...), each a scalar of some numeric class; a numeric
// array of any class and shape, real or complex; char, a word of the dictionary, logical,
// cell, string (elements possibly missing); struct, function, object or a class the library
// does not know; an empty array of any class; an array an earlier call returned.
// clang-format off
enum class Kind : std::uint8_t {
  PoolId, SmallInt, Special, Numeric, Char, Word, Logical, Cell, String, Opaque, Empty, Output,
  kCount
};
// clang-format on

constexpr std::uint64_t kMaxDataElements = 4096;
constexpr std::uint64_t kMaxNestedElements = 12;
constexpr int kMaxDepth = 3;

// clang-format off
// Extents worth meeting besides 0..8: limits of 32-bit and 64-bit counts (only opaque
// arrays keep those), row limits of the library.
constexpr std::array<std::uint64_t, 16> kSpecialExtents = {
    9, 16, 64, 256, 1025, 4096, 65536, std::uint64_t{1} << 31, (std::uint64_t{1} << 32) + 1,
    std::uint64_t{1} << 40, std::uint64_t{1} << 53, std::uint64_t{1} << 62, 0, 1, 2, 3};

constexpr std::array<double, 32> kSpecialDoubles = {
    0.0, -0.0, 1.0, -1.0, 0.5, -0.5, 2.7, -2.7, std::numeric_limits<double>::quiet_NaN(),
    std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
    2147483647.0, 2147483648.0, -2147483648.0, -2147483649.0, 4294967296.0,
    9007199254740993.0, 9223372036854775808.0, 18446744073709551616.0, -9223372036854775808.0,
    1e30, -1e30, DBL_MAX, DBL_MIN, 5e-324, 255.0, 256.0, 65535.0, 1024.0, 1025.0, 4096.0, 12.0};

// INT64_MIN + 1 as uint64 is 2^63 + 1, whose square is 1 modulo 2^64.
constexpr std::array<std::int64_t, 32> kSpecialIntegers = {
    0, 1, -1, 2, 3, -2, 127, -128, 255, 256, 32767, -32768, 65535, 65536, INT32_MAX, INT32_MIN,
    4294967295LL, 4294967296LL, INT64_MAX, INT64_MIN, 9007199254740993LL, 1023, 1024, 1025,
    4096, 12, 13, -33, INT64_MIN + 1, 6, 7, 10};
// clang-format on

// Char bytes from 0x80 up stand for awkward code units: surrogates, NUL, non-characters ...
constexpr std::array<char16_t, 16> kAwkwardUnits = {0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0x00E9, 0x00FF,
                                                    0x0100, 0x4E2D, 0xFEFF, 0xFFFD, 0xFFFF, 0xFF2F,
                                                    0x0000, 0x007F, 0x0080, 0xFFE9};

// Codes 0 to 9 select the numeric classes, which are consecutive from double.
qvClassID numericClass(std::uint8_t code) {
  return static_cast<qvClassID>(qvDOUBLE_CLASS + code % 10);
}

// Words starting with '#' name fixture files.
const std::vector<std::string> kDictionary = {
    "#classic", "#offset", "#cdf5", "#nc4", "#nc4classic", "#empty", "#garbage", "#truncated",
    "#dir", "#missing", "#url",
    // File modes.
    "clobber", "noclobber", "netcdf4", "64bit_offset", "classic_model", "write", "nowrite", "share",
    "NC_NETCDF4", "nc_clobber",
    // Names the fixtures use, and others.
    "x", "y", "t", "z", "d", "i", "c", "u", "b", "f", "ll", "s", "vl", "vv", "vs", "vc", "ch", "us",
    "ui", "ub", "l", "g", "h", "gv", "vli", "vlv", "vls", "vlc", "title", "nums", "ai", "al", "aub",
    "sa", "va", "v", "units", "_FillValue", "/g", "a b", "",
    // Constants.
    "NC_DOUBLE", "NC_GLOBAL", "NC_UNLIMITED", "FILL_DOUBLE", "NC_FILL_STRING", "NC_MAX_NAME",
    "NC_CHUNKED", "NC_FLETCHER32", "NC_NOFILL", "nc_byte", "NC_EBADID", "NC2_ERR", "FILL_BYTE",
    "FILL_UBYTE", "FILL_SHORT", "FILL_USHORT", "FILL_INT", "FILL_UINT", "FILL_INT64", "FILL_UINT64",
    "FILL_FLOAT", "FILL_CHAR", "fill_string"};

std::uint8_t byte(FuzzedDataProvider& in) { return in.ConsumeIntegral<std::uint8_t>(); }

// Past the end of the input, zeros.
std::vector<std::uint8_t> bytes(FuzzedDataProvider& in, std::size_t n) {
  std::vector<std::uint8_t> v = in.ConsumeBytes<std::uint8_t>(n);
  v.resize(n, 0);
  return v;
}

// A header byte for the rank (2 to 5), then a code per extent. Arrays are folded down to
// maxElements by halving the largest extent, which keeps zeros and the rank; zeros do not
// count, since the host refuses extents multiplying past 64 bits even beside a zero.
std::vector<std::uint64_t> readExtents(FuzzedDataProvider& in, std::uint64_t maxElements) {
  std::vector<std::uint64_t> extents(2 + byte(in) % 4);
  for (std::uint64_t& e : extents) {
    const std::uint8_t code = byte(in);
    e = code < 0xF0 ? code % 9 : kSpecialExtents[code - 0xF0];
  }
  auto tooLarge = [&] {
    std::uint64_t n = 1;
    for (const std::uint64_t e : extents) {
      if (e != 0 && __builtin_mul_overflow(n, e, &n)) return true;
    }
    return n > maxElements;
  };
  while (tooLarge()) *std::max_element(extents.begin(), extents.end()) /= 2;
  return extents;
}

std::size_t countOf(const std::vector<std::uint64_t>& extents) {
  std::uint64_t n = 1;
  for (const std::uint64_t e : extents) n *= e;  // folded: cannot overflow
  return n;
}

char16_t unitOf(std::uint8_t b) {
  return b < 0x80 ? static_cast<char16_t>(b) : kAwkwardUnits[b % kAwkwardUnits.size()];
}

// Values as a host would hold them: floating values narrowed without undefined
// behaviour, whole numbers wrapped into the type.
template <class T>
T fromDouble(double v) {
  if constexpr (std::is_floating_point_v<T>) {
    if (std::isfinite(v) && std::fabs(v) > static_cast<double>(std::numeric_limits<T>::max())) {
      return v > 0 ? std::numeric_limits<T>::infinity() : -std::numeric_limits<T>::infinity();
    }
    return static_cast<T>(v);
  } else {
    if (!(v > -9.2e18 && v < 9.2e18)) return T{0};
    return static_cast<T>(static_cast<std::int64_t>(v));
  }
}

template <class T>
T special(std::uint8_t index) {
  if constexpr (std::is_floating_point_v<T>) {
    return fromDouble<T>(kSpecialDoubles[index % kSpecialDoubles.size()]);
  } else {
    return static_cast<T>(kSpecialIntegers[index % kSpecialIntegers.size()]);
  }
}

qvArrayPtr scalar(std::uint8_t cls, double value, bool isSpecial, std::uint8_t index) {
  const std::array<std::uint64_t, 2> dims{1, 1};
  qvArrayPtr a = matrix::detail::do_create_numeric(dims, numericClass(cls), qvREAL);
  qvVisitNumeric(qvGetClassID(a.get()), [&](auto tag) {
    using T = decltype(tag);
    *static_cast<T*>(qvGetData(a.get())) = isSpecial ? special<T>(index) : fromDouble<T>(value);
  });
  return a;
}

// Mode 0: zeros; 1: small values, a byte each; 2: raw element bytes; 3: special values.
qvArrayPtr numericArray(FuzzedDataProvider& in) {
  const std::uint8_t code = byte(in);
  const qvClassID cls = numericClass(code);
  const bool complex = (code & 0x10) != 0;
  const auto dims = readExtents(in, kMaxDataElements);
  const std::uint8_t mode = byte(in) % 4;
  const std::size_t n = countOf(dims);
  const auto data = bytes(in, mode == 0 ? 0 : mode == 2 ? n * qvElementSize(cls) : n);
  qvArrayPtr a = matrix::detail::do_create_numeric(dims, cls, complex ? qvCOMPLEX : qvREAL);
  qvVisitNumeric(cls, [&](auto tag) {
    using T = decltype(tag);
    auto* out = static_cast<T*>(qvGetData(a.get()));
    for (std::size_t i = 0; i < n; ++i) {
      if (mode == 1) out[i] = fromDouble<T>(static_cast<std::int8_t>(data[i]));
      if (mode == 2) std::memcpy(&out[i], data.data() + i * sizeof(T), sizeof(T));
      if (mode == 3) out[i] = special<T>(data[i]);
    }
    if (complex && n != 0) std::memcpy(qvGetImagData(a.get()), out, n * sizeof(T));
  });
  return a;
}

// Class codes 0 to 9 are the numeric classes, then char, logical, cell and string.
qvArrayPtr emptyArray(std::uint8_t cls, std::uint8_t shapeIndex) {
  static constexpr std::array<std::array<std::uint64_t, 3>, 6> kShapes = {
      {{0, 0, 1}, {1, 0, 1}, {0, 1, 1}, {0, 3, 1}, {0, 0, 2}, {std::uint64_t{1} << 40, 0, 1}}};
  const auto& shape = kShapes[shapeIndex % kShapes.size()];
  const std::vector<std::uint64_t> dims(shape.begin(), shape.end());
  if (cls % 14 == 12) return matrix::detail::do_create_cell(dims);
  if (cls % 14 == 13) return createStringArray(dims.size(), dims.data());
  const qvClassID id =
      cls % 14 < 10 ? numericClass(cls % 14) : (cls % 14 == 10 ? qvCHAR_CLASS : qvLOGICAL_CLASS);
  return matrix::detail::do_create_numeric(dims, id, qvREAL);
}

qvArrayPtr opaqueArray(FuzzedDataProvider& in) {
  const std::uint8_t which = byte(in);
  qvArrayPtr a =
      qvCreateOpaque(readExtents(in, UINT64_MAX),
                     std::array{qvSTRUCT_CLASS, qvFUNCTION_CLASS, qvOBJECT_CLASS}[which % 3]);
  // Classes a host may hold that the library has never heard of: the unknown and void
  // ids, and a header tag that resolves to nothing.
  static constexpr std::array<std::uint8_t, 3> kForeignTags = {qvUNKNOWN_CLASS, qvVOID_CLASS, 200};
  if (which % 6 >= 3) a->classTag = kForeignTags[which % 6 - 3];
  return a;
}

}  // namespace

qvArrayPtr readArray(FuzzedDataProvider& in, CallHistory& history, int depth) {
  switch (static_cast<Kind>(byte(in) % static_cast<std::uint8_t>(Kind::kCount))) {
    case Kind::PoolId: {
      const auto& pool = history.pool(static_cast<Pool>(byte(in) % static_cast<int>(Pool::kCount)));
      const std::uint8_t index = byte(in);
      return scalar(byte(in), pool.empty() ? 0.0 : pool[index % pool.size()], false, 0);
    }
    case Kind::SmallInt: {
      const auto value = static_cast<std::int8_t>(byte(in));
      return scalar(byte(in), value, false, 0);
    }
    case Kind::Special: {
      const std::uint8_t index = byte(in);
      return scalar(byte(in), 0.0, true, index);
    }
    case Kind::Numeric:
      return numericArray(in);
    case Kind::Char: {
      const auto dims = readExtents(in, kMaxDataElements);
      const auto data = bytes(in, countOf(dims));
      qvArrayPtr a = matrix::detail::do_create_numeric(dims, qvCHAR_CLASS, qvREAL);
      std::transform(data.begin(), data.end(), static_cast<char16_t*>(qvGetData(a.get())), unitOf);
      return a;
    }
    case Kind::Word: {
      const std::string& word = kDictionary[byte(in) % kDictionary.size()];
      return matrix::create(word.data(), word.size());
    }
    case Kind::Logical: {
      const auto dims = readExtents(in, kMaxDataElements);
      const std::size_t n = countOf(dims);
      const auto data = bytes(in, (n + 7) / 8);
      qvArrayPtr a = matrix::detail::do_create_numeric(dims, qvLOGICAL_CLASS, qvREAL);
      for (std::size_t i = 0; i < n; ++i) qvGetLogicals(a.get())[i] = (data[i / 8] >> (i % 8)) & 1;
      return a;
    }
    case Kind::Cell: {
      const auto dims = readExtents(in, kMaxNestedElements);
      qvArrayPtr a = matrix::detail::do_create_cell(dims);
      const std::size_t n = depth < kMaxDepth ? countOf(dims) : 0;
      for (std::size_t i = 0; i < n; ++i) {
        if (qvArrayPtr element = readArray(in, history, depth + 1)) {
          qvSetCell(a.get(), i, std::move(element));
        }
      }
      return a;
    }
    case Kind::String: {
      const auto dims = readExtents(in, kMaxNestedElements);
      qvArrayPtr a = createStringArray(dims.size(), dims.data());
      for (std::size_t i = 0; i < countOf(dims); ++i) {
        const std::uint8_t length = byte(in);  // 0xFF: missing; otherwise modulo 8
        if (length == 0xFF) {
          setStringMissing(a.get(), i);
          continue;
        }
        std::u16string text;
        for (const std::uint8_t b : bytes(in, length % 8)) text += unitOf(b);
        setStringElement(a.get(), i, std::move(text));
      }
      return a;
    }
    case Kind::Opaque:
      return opaqueArray(in);
    case Kind::Empty: {
      const std::uint8_t cls = byte(in), shape = byte(in);
      if (depth > 0 && shape == 0xFF) return nullptr;  // a cell element left unset
      return emptyArray(cls, shape);
    }
    case Kind::Output: {
      const std::uint8_t index = byte(in);
      if (history.outputs.empty()) return emptyArray(0, 0);
      return qvShareArray(history.outputs[index % history.outputs.size()].get());
    }
    case Kind::kCount:
      break;
  }
  return nullptr;
}

std::vector<double> numericValues(const qvArray* a) {
  const qvClassID cls = qvGetClassID(a);
  if (!qvIsNumericClassID(cls) || qvIsComplex(a)) return {};
  std::vector<double> out(qvGetNumberOfElements(a));
  qvVisitNumeric(cls, [&](auto tag) {
    using T = decltype(tag);
    const auto* values = static_cast<const T*>(qvGetData(a));
    for (std::size_t i = 0; i < out.size(); ++i) out[i] = static_cast<double>(values[i]);
  });
  return out;
}

}  // namespace fuzz
