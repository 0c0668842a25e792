#include "fuzz_arrays.hpp"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <type_traits>

#include "qvhost/array.hpp"
#include "qvhost/strings.hpp"

namespace fuzz {

namespace {

constexpr std::array<double, 32> kSpecialDoubles = {
    0.0,
    -0.0,
    1.0,
    -1.0,
    0.5,
    -0.5,
    2.7,
    -2.7,
    std::numeric_limits<double>::quiet_NaN(),
    std::numeric_limits<double>::infinity(),
    -std::numeric_limits<double>::infinity(),
    2147483647.0,
    2147483648.0,
    -2147483648.0,
    -2147483649.0,
    4294967296.0,
    9007199254740993.0,
    9223372036854775808.0,
    18446744073709551616.0,
    -9223372036854775808.0,
    1e30,
    -1e30,
    DBL_MAX,
    DBL_MIN,
    5e-324,
    255.0,
    256.0,
    65535.0,
    1024.0,
    1025.0,
    4096.0,
    12.0,
};

constexpr std::array<std::int64_t, 32> kSpecialIntegers = {
    0,
    1,
    -1,
    2,
    3,
    -2,
    127,
    -128,
    255,
    256,
    32767,
    -32768,
    65535,
    65536,
    INT32_MAX,
    INT32_MIN,
    4294967295LL,
    4294967296LL,
    INT64_MAX,
    INT64_MIN,
    9007199254740993LL,
    1023,
    1024,
    1025,
    4096,
    12,
    13,
    -33,
    INT64_MIN + 1,  // as uint64: 2^63 + 1, whose square is 1 modulo 2^64
    6,
    7,
    10,
};

constexpr std::array<char16_t, 16> kAwkwardUnits = {0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0x00E9, 0x00FF,
                                                    0x0100, 0x4E2D, 0xFEFF, 0xFFFD, 0xFFFF, 0xFF2F,
                                                    0x0000, 0x007F, 0x0080, 0xFFE9};

constexpr std::array<qvClassID, 10> kNumericClasses = {
    qvDOUBLE_CLASS, qvSINGLE_CLASS, qvINT8_CLASS,   qvUINT8_CLASS, qvINT16_CLASS,
    qvUINT16_CLASS, qvINT32_CLASS,  qvUINT32_CLASS, qvINT64_CLASS, qvUINT64_CLASS};

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

qvArrayPtr numericScalar(qvClassID cls, double value, bool fromIntegerTable, std::uint8_t index) {
  const std::array<std::uint64_t, 2> dims{1, 1};
  qvArrayPtr a = matrix::detail::do_create_numeric(dims, cls, qvREAL);
  qvVisitNumeric(cls, [&](auto tag) {
    using T = decltype(tag);
    *static_cast<T*>(qvGetData(a.get())) =
        fromIntegerTable ? special<T>(index) : fromDouble<T>(value);
  });
  return a;
}

qvArrayPtr numericArray(const ArgSpec& arg) {
  const qvClassID cls = kNumericClasses[arg.a % 10];
  const bool complex = (arg.a & 0x10) != 0;
  const auto dims = extentsOf(arg.shape, kMaxDataElements);
  qvArrayPtr a = matrix::detail::do_create_numeric(dims, cls, complex ? qvCOMPLEX : qvREAL);
  const std::size_t n = elementCountOf(dims);
  qvVisitNumeric(cls, [&](auto tag) {
    using T = decltype(tag);
    auto* out = static_cast<T*>(qvGetData(a.get()));
    for (std::size_t i = 0; i < n; ++i) {
      switch (arg.b % 4) {
        case 1:
          out[i] = fromDouble<T>(static_cast<std::int8_t>(arg.data[i]));
          break;
        case 2:
          std::memcpy(&out[i], arg.data.data() + i * sizeof(T), sizeof(T));
          break;
        case 3:
          out[i] = special<T>(arg.data[i]);
          break;
        default:
          break;
      }
    }
    if (complex && n != 0) std::memcpy(qvGetImagData(a.get()), out, n * sizeof(T));
  });
  return a;
}

qvArrayPtr charArray(const ArgSpec& arg) {
  const auto dims = extentsOf(arg.shape, kMaxDataElements);
  qvArrayPtr a = matrix::detail::do_create_numeric(dims, qvCHAR_CLASS, qvREAL);
  auto* units = static_cast<char16_t*>(qvGetData(a.get()));
  for (std::size_t i = 0; i < elementCountOf(dims); ++i) units[i] = unitOf(arg.data[i]);
  return a;
}

qvArrayPtr logicalArray(const ArgSpec& arg) {
  const auto dims = extentsOf(arg.shape, kMaxDataElements);
  qvArrayPtr a = matrix::detail::do_create_numeric(dims, qvLOGICAL_CLASS, qvREAL);
  bool* values = qvGetLogicals(a.get());
  for (std::size_t i = 0; i < elementCountOf(dims); ++i) {
    values[i] = ((arg.data[i / 8] >> (i % 8)) & 1) != 0;
  }
  return a;
}

qvArrayPtr cellArray(const ArgSpec& arg, const CallHistory& history, int depth) {
  const auto dims = extentsOf(arg.shape, kMaxNestedElements);
  qvArrayPtr a = matrix::detail::do_create_cell(dims);
  for (std::size_t i = 0; i < arg.children.size() && i < elementCountOf(dims); ++i) {
    const ArgSpec& child = arg.children[i];
    // An empty description whose shape byte is 0xFF leaves the element null.
    if (child.kind == ArgKind::Empty && child.b == 0xFF) continue;
    qvSetCell(a.get(), i, buildArray(child, history, depth + 1));
  }
  return a;
}

qvArrayPtr stringArray(const ArgSpec& arg) {
  const auto dims = extentsOf(arg.shape, kMaxNestedElements);
  qvArrayPtr a = createStringArray(dims.size(), dims.data());
  for (std::size_t i = 0; i < arg.children.size() && i < elementCountOf(dims); ++i) {
    const ArgSpec& element = arg.children[i];
    if (element.a == 0xFF) {
      setStringMissing(a.get(), i);
      continue;
    }
    std::u16string text;
    for (const std::uint8_t b : element.data) text += unitOf(b);
    setStringElement(a.get(), i, std::move(text));
  }
  return a;
}

qvArrayPtr opaqueArray(const ArgSpec& arg) {
  const auto dims = extentsOf(arg.shape, UINT64_MAX);
  static constexpr std::array<qvClassID, 3> kOpaque = {qvSTRUCT_CLASS, qvFUNCTION_CLASS,
                                                       qvOBJECT_CLASS};
  qvArrayPtr a = qvCreateOpaque(dims, kOpaque[arg.a % 3]);
  // Classes a host may hold that the library has never heard of: the unknown and void
  // ids, and a header tag that resolves to nothing.
  static constexpr std::array<std::uint8_t, 3> kForeignTags = {qvUNKNOWN_CLASS, qvVOID_CLASS, 200};
  if (arg.a % 6 >= 3) a->classTag = kForeignTags[arg.a % 6 - 3];
  return a;
}

qvArrayPtr emptyArray(const ArgSpec& arg) {
  static constexpr std::array<std::array<std::uint64_t, 3>, 6> kShapes = {{
      {0, 0, 1},
      {1, 0, 1},
      {0, 1, 1},
      {0, 3, 1},
      {0, 0, 2},
      {std::uint64_t{1} << 40, 0, 1},
  }};
  const auto& shape = kShapes[arg.b % kShapes.size()];
  const std::vector<std::uint64_t> dims(shape.begin(), shape.end());
  switch (arg.a % 14) {
    case 10:
      return matrix::detail::do_create_numeric(dims, qvCHAR_CLASS, qvREAL);
    case 11:
      return matrix::detail::do_create_numeric(dims, qvLOGICAL_CLASS, qvREAL);
    case 12:
      return matrix::detail::do_create_cell(dims);
    case 13:
      return createStringArray(dims.size(), dims.data());
    default:
      return matrix::detail::do_create_numeric(dims, kNumericClasses[arg.a % 14], qvREAL);
  }
}

}  // namespace

std::vector<double> numericValues(const qvArray* a, std::size_t limit) {
  const qvClassID cls = qvGetClassID(a);
  if (!qvIsNumericClassID(cls) || qvIsComplex(a)) return {};
  std::vector<double> out(std::min(qvGetNumberOfElements(a), limit));
  qvVisitNumeric(cls, [&](auto tag) {
    using T = decltype(tag);
    const auto* values = static_cast<const T*>(qvGetData(a));
    for (std::size_t i = 0; i < out.size(); ++i) out[i] = static_cast<double>(values[i]);
  });
  return out;
}

char16_t unitOf(std::uint8_t byte) {
  return byte < 0x80 ? static_cast<char16_t>(byte) : kAwkwardUnits[byte % kAwkwardUnits.size()];
}

qvArrayPtr buildArray(const ArgSpec& arg, const CallHistory& history, int depth) {
  switch (arg.kind) {
    case ArgKind::PoolId: {
      const auto& pool = history.pool(static_cast<Pool>(arg.a % static_cast<int>(Pool::kCount)));
      const double id = pool.empty() ? 0.0 : pool[arg.b % pool.size()];
      const std::uint8_t cls = arg.data.empty() ? 0 : arg.data[0];
      return numericScalar(kNumericClasses[cls % 10], id, false, 0);
    }
    case ArgKind::SmallInt:
      return numericScalar(kNumericClasses[arg.b % 10], static_cast<std::int8_t>(arg.a), false,
                           0);
    case ArgKind::Special: {
      const qvClassID cls = kNumericClasses[arg.b % 10];
      return numericScalar(cls, 0.0, true, arg.a);
    }
    case ArgKind::Numeric:
      return numericArray(arg);
    case ArgKind::Char:
      return charArray(arg);
    case ArgKind::Word: {
      const std::string& word = dictionary()[arg.a % dictionary().size()];
      return matrix::create(word.data(), word.size());
    }
    case ArgKind::Logical:
      return logicalArray(arg);
    case ArgKind::Cell:
      return cellArray(arg, history, depth);
    case ArgKind::String:
      return stringArray(arg);
    case ArgKind::Opaque:
      return opaqueArray(arg);
    case ArgKind::Empty:
      return emptyArray(arg);
    case ArgKind::Output:
      if (!history.outputs.empty()) {
        return qvShareArray(history.outputs[arg.a % history.outputs.size()].get());
      }
      return emptyArray(ArgSpec{});
    case ArgKind::kCount:
      break;
  }
  return emptyArray(ArgSpec{});
}

const std::vector<std::string>& dictionary() {
  static const std::vector<std::string> words = {
      // Fixture files (see fuzz_session.cpp).
      "#classic", "#offset", "#cdf5", "#nc4", "#nc4classic", "#empty", "#garbage", "#truncated",
      "#dir", "#missing", "#url",
      // File modes.
      "clobber", "noclobber", "netcdf4", "64bit_offset", "classic_model", "write", "nowrite",
      "share", "NC_NETCDF4", "nc_clobber",
      // Names the fixtures use, and others.
      "x", "y", "t", "z", "d", "i", "c", "u", "b", "f", "ll", "s", "vl", "vv", "vs", "vc", "ch",
      "us", "ui", "ub", "l", "g", "h", "gv", "vli", "vlv", "vls", "vlc", "title", "nums", "ai",
      "al", "aub", "sa", "va", "v", "units", "_FillValue", "/g", "a b", "",
      // Constants.
      "NC_DOUBLE", "NC_GLOBAL", "NC_UNLIMITED", "FILL_DOUBLE", "NC_FILL_STRING", "NC_MAX_NAME",
      "NC_CHUNKED", "NC_FLETCHER32", "NC_NOFILL", "nc_byte", "NC_EBADID", "NC2_ERR",
      // Default fill values of every type (appended: earlier words keep their index).
      "FILL_BYTE", "FILL_UBYTE", "FILL_SHORT", "FILL_USHORT", "FILL_INT", "FILL_UINT",
      "FILL_INT64", "FILL_UINT64", "FILL_FLOAT", "FILL_CHAR", "fill_string"};
  return words;
}

std::uint8_t wordIndex(const std::string& word) {
  const auto& words = dictionary();
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (words[i] == word) return static_cast<std::uint8_t>(i);
  }
  throw std::invalid_argument("not in the dictionary: " + word);
}

}  // namespace fuzz
