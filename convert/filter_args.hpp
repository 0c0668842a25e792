// Arguments of the compression and in-memory operations: exact unsigned 32-bit filter ids
// and parameters, settings given by name or number, and file bytes.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "qvhost/array.hpp"

// A real numeric scalar holding a whole number from 0 to 2^32-1; anything else (negative,
// fractional, larger, NaN, empty, non-numeric) raises argumentNotOfKind(name, ...).
unsigned getUnsigned32(const qvArray* a, const std::string& name);
// The same for every element of an empty array or a vector, in order.
std::vector<unsigned> getUnsigned32Row(const qvArray* a, const std::string& name);
// 1-by-n double row; 0-by-0 when empty.
qvArrayPtr makeUnsigned32Row(std::span<const unsigned> values);

struct NamedCode {
  std::string_view name;
  int code;
};
// A setting by name (any case) or by number; an unknown name raises
// unrecognizedCharParameter with the text as given.
int getNamedCode(const qvArray* a, const std::string& argName, std::span<const NamedCode> codes);
// The name of a code; its decimal text when it has none.
qvArrayPtr makeCodeName(int code, std::span<const NamedCode> codes);

// The bytes of a real uint8 array of any shape, read in place.
std::span<const std::byte> getBytes(const qvArray* a, const std::string& name);
// n-by-1 uint8 column holding a copy of the bytes.
qvArrayPtr makeByteColumn(std::span<const std::byte> bytes);
