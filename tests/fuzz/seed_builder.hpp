// A small vocabulary for writing fuzz programs by hand: the seed corpus is written with it.
#pragma once

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "fuzz_arrays.hpp"
#include "fuzz_program.hpp"
#include "gateway/operation.hpp"

namespace seeds {

using fuzz::ArgKind;
using fuzz::ArgSpec;
using fuzz::Call;
using fuzz::Pool;

// Class codes of Numeric and scalar descriptions.
enum Cls : std::uint8_t { Dbl, Sgl, I8, U8, I16, U16, I32, U32, I64, U64 };

template <class T>
constexpr Cls clsOf() {
  if constexpr (std::is_same_v<T, double>) return Dbl;
  if constexpr (std::is_same_v<T, float>) return Sgl;
  if constexpr (std::is_same_v<T, std::int8_t>) return I8;
  if constexpr (std::is_same_v<T, std::uint8_t>) return U8;
  if constexpr (std::is_same_v<T, std::int16_t>) return I16;
  if constexpr (std::is_same_v<T, std::uint16_t>) return U16;
  if constexpr (std::is_same_v<T, std::int32_t>) return I32;
  if constexpr (std::is_same_v<T, std::uint32_t>) return U32;
  if constexpr (std::is_same_v<T, std::int64_t>) return I64;
  return U64;
}

// Extents up to 8 directly, 9 and 16 through the special codes.
inline std::uint8_t extentCode(std::size_t e) {
  if (e <= 8) return static_cast<std::uint8_t>(e);
  if (e == 9) return 0xF0;
  if (e == 16) return 0xF1;
  throw std::invalid_argument("extent not expressible in a seed");
}

inline std::vector<std::uint8_t> shape(std::size_t rows, std::size_t cols) {
  return {0, extentCode(rows), extentCode(cols)};
}

inline ArgSpec id(Pool pool, std::uint8_t index = 0) {
  ArgSpec s;
  s.kind = ArgKind::PoolId;
  s.a = static_cast<std::uint8_t>(pool);
  s.b = index;
  s.data = {Dbl};
  return s;
}
inline ArgSpec ncid(std::uint8_t index = 0) { return id(Pool::Ncid, index); }

inline ArgSpec num(int value, Cls cls = Dbl) {
  ArgSpec s;
  s.kind = ArgKind::SmallInt;
  s.a = static_cast<std::uint8_t>(static_cast<std::int8_t>(value));
  s.b = cls;
  return s;
}

// Index into the special value tables of fuzz_arrays.cpp.
inline ArgSpec special(std::uint8_t index, Cls cls = Dbl) {
  ArgSpec s;
  s.kind = ArgKind::Special;
  s.a = index;
  s.b = cls;
  return s;
}

inline ArgSpec word(const std::string& w) {
  ArgSpec s;
  s.kind = ArgKind::Word;
  s.a = fuzz::wordIndex(w);
  return s;
}

inline ArgSpec chars(const std::string& text, std::size_t rows = 1) {
  ArgSpec s;
  s.kind = ArgKind::Char;
  s.shape = shape(rows, text.size() / rows);
  s.data.assign(text.begin(), text.end());
  return s;
}

template <class T>
ArgSpec values(std::vector<T> v, std::size_t rows, std::size_t cols) {
  ArgSpec s;
  s.kind = ArgKind::Numeric;
  s.a = clsOf<T>();
  s.b = 2;  // raw element bytes
  s.shape = shape(rows, cols);
  s.data.resize(v.size() * sizeof(T));
  std::memcpy(s.data.data(), v.data(), s.data.size());
  return s;
}
template <class T>
ArgSpec row(std::vector<T> v) {
  const std::size_t n = v.size();
  return values<T>(std::move(v), 1, n);
}
template <class T>
ArgSpec column(std::vector<T> v) {
  const std::size_t n = v.size();
  return values<T>(std::move(v), n, 1);
}

inline ArgSpec logical(bool v) {
  ArgSpec s;
  s.kind = ArgKind::Logical;
  s.shape = shape(1, 1);
  s.data = {static_cast<std::uint8_t>(v ? 1 : 0)};
  return s;
}

inline ArgSpec cell(std::vector<ArgSpec> elements, std::size_t rows = 0) {
  ArgSpec s;
  s.kind = ArgKind::Cell;
  const std::size_t n = elements.size();
  s.shape = rows == 0 ? shape(n, 1) : shape(rows, n / rows);
  s.children = std::move(elements);
  return s;
}

inline ArgSpec strings(std::vector<std::optional<std::string>> elements) {
  ArgSpec s;
  s.kind = ArgKind::String;
  s.shape = shape(elements.size(), 1);
  for (const auto& e : elements) {
    ArgSpec element;
    element.a = e ? static_cast<std::uint8_t>(e->size()) : 0xFF;
    if (e) element.data.assign(e->begin(), e->end());
    s.children.push_back(std::move(element));
  }
  return s;
}

inline ArgSpec opaque(std::uint8_t which) {
  ArgSpec s;
  s.kind = ArgKind::Opaque;
  s.a = which;
  s.shape = shape(1, 1);
  return s;
}

inline ArgSpec empty(std::uint8_t cls, std::uint8_t shapeIndex = 0) {
  ArgSpec s;
  s.kind = ArgKind::Empty;
  s.a = cls;
  s.b = shapeIndex;
  return s;
}

inline ArgSpec output(std::uint8_t index) {
  ArgSpec s;
  s.kind = ArgKind::Output;
  s.a = index;
  return s;
}

// A call of the first row of that name taking that many inputs.
inline Call call(const char* name, std::vector<ArgSpec> args) {
  const auto table = operationTable();
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (std::strcmp(table[i].name, name) == 0 &&
        static_cast<std::size_t>(table[i].nInputs) == args.size()) {
      return Call{static_cast<std::uint8_t>(i), 1, std::move(args)};
    }
  }
  throw std::invalid_argument(std::string("no such row: ") + name);
}

// A call with an operation byte and input count of its own (bogus names, wrong counts).
inline Call raw(std::uint8_t op, std::vector<ArgSpec> args) {
  return Call{op, static_cast<std::uint8_t>(0xF0 | args.size()), std::move(args)};
}

}  // namespace seeds
