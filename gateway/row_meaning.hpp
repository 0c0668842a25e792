// What a row of the operation table means beyond its handler, read from its name at
// compile time: data rows are named access, target, form and kind, as "getVaraDouble" =
// get + Var + a (block) + Double and "putAttText" = put + Att + Text. A data row without
// a kind ("getVar1", "putAtt") moves data in the variable's or attribute's own type.
// Header-only, so that a bridge converts a row's data as the row expects without asking.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "convert/types.hpp"

enum class Access : std::uint8_t { None, Get, Put };
enum class Target : std::uint8_t { Variable, Attribute };
// Spelled "", "1", "a", "s" after "getVar"/"putVar": the whole variable, one element, a
// block (START, COUNT), a strided block (START, COUNT, STRIDE).
enum class Form : std::uint8_t { Whole, One, Block, Strided };

// How a bridge hands over a row's last input, its data:
// Plain   as any other input;
// Bytes   a char array as one byte per character (NC_CHAR variable data);
// Strings a char row or cell of char rows as a string array;
// Vlen    a cell of element data, nested cells for nested records;
// OwnType data of whatever the target's type is: char as Bytes, a cell of char rows as
//         Strings, other cells as Vlen, anything else as Plain.
enum class DataInput : std::uint8_t { Plain, Bytes, Strings, Vlen, OwnType };

struct RowMeaning {
  Access access = Access::None;
  Target target = Target::Variable;
  Form form = Form::Whole;
  // Empty for untyped data rows: the target's own type.
  std::optional<DataKind> kind;
  DataInput data = DataInput::Plain;
};

namespace row_meaning_detail {
constexpr char lower(char c) noexcept { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; }

// Case-insensitive: some rows spell a kind "UInt".
constexpr std::optional<DataKind> kindNamed(std::string_view s) noexcept {
  for (std::size_t k = 0; k < std::size(kDataKindNames); ++k) {
    const std::string_view name = kDataKindNames[k];
    bool same = name.size() == s.size();
    for (std::size_t i = 0; same && i < s.size(); ++i) same = lower(name[i]) == lower(s[i]);
    if (same) return static_cast<DataKind>(k);
  }
  return std::nullopt;
}

constexpr DataInput dataInputOf(const RowMeaning& m) noexcept {
  if (m.access != Access::Put) return DataInput::Plain;
  if (!m.kind) return DataInput::OwnType;
  if (*m.kind == DataKind::Text && m.target == Target::Variable) return DataInput::Bytes;
  if (*m.kind == DataKind::String) return DataInput::Strings;
  if (*m.kind == DataKind::Vlen) return DataInput::Vlen;
  return DataInput::Plain;
}
}  // namespace row_meaning_detail

constexpr RowMeaning meaningOf(std::string_view name) noexcept {
  // Rows outside the naming pattern whose data needs a form of its own.
  RowMeaning m;
  if (name == "defVarFill") {
    m.data = DataInput::Vlen;
    return m;
  }
  if (name.starts_with("get")) {
    m.access = Access::Get;
  } else if (name.starts_with("put")) {
    m.access = Access::Put;
  } else {
    return {};
  }
  name.remove_prefix(3);
  if (name.starts_with("Att")) {
    m.target = Target::Attribute;
  } else if (!name.starts_with("Var")) {
    return {};
  }
  name.remove_prefix(3);
  if (m.target == Target::Variable && !name.empty()) {
    constexpr std::string_view kForms = "1as";
    if (const auto f = kForms.find(name.front()); f != std::string_view::npos) {
      m.form = static_cast<Form>(f + 1);
      name.remove_prefix(1);
    }
  }
  if (!name.empty()) {
    m.kind = row_meaning_detail::kindNamed(name);
    if (!m.kind) return {};
  }
  m.data = row_meaning_detail::dataInputOf(m);
  return m;
}
