// What one fuzz input means: a short sequence of netcdflib calls, each an operation and a
// description of every input array. Any byte string decodes to a program (read through
// FuzzedDataProvider); the seed generator writes programs back with encode(), which walks
// them with the same code.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace fuzz {

inline constexpr std::size_t kMaxCalls = 8;
// Inputs after the operation name: one more than any operation takes.
inline constexpr std::size_t kMaxInputs = 7;
// Cells nest at most this deep; deeper elements are empty.
inline constexpr int kMaxDepth = 3;

enum class ArgKind : std::uint8_t {
  PoolId,    // an id an earlier call returned, as a scalar of some numeric class
  SmallInt,  // a small whole number as a scalar of some numeric class
  Special,   // NaN, infinities, range limits ... as a double or single scalar
  Numeric,   // a numeric array of any class and shape, real or complex
  Char,      // a char array of any shape
  Word,      // a char row from the dictionary (names, modes, constants, fixtures)
  Logical,   // a logical array
  Cell,      // a cell array of nested descriptions
  String,    // a string array, elements possibly missing
  Opaque,    // struct, function, object and classes the library does not know
  Empty,     // an empty array of any class
  Output,    // an array an earlier call returned
  kCount,
};

// Pools of ids collected from earlier calls' outputs.
enum class Pool : std::uint8_t { Ncid, Varid, Dimid, Typeid, Attnum, Number, kCount };

struct ArgSpec {
  ArgKind kind = ArgKind::SmallInt;
  std::uint8_t a = 0;               // class, pool, special index, word index, opaque kind ...
  std::uint8_t b = 0;               // pool index, class of a scalar, fill mode ...
  std::vector<std::uint8_t> shape;  // header byte, then one code per extent
  std::vector<std::uint8_t> data;   // element bytes, as the kind needs them
  std::vector<ArgSpec> children;    // cell elements; string elements as (length, units)
};

struct Call {
  std::uint8_t op = 0;    // a row of the operation table, or a bogus name
  std::uint8_t argc = 0;  // below 0xF0: the row's own count; else a count of its own
  std::vector<ArgSpec> args;
};

using Program = std::vector<Call>;

// ---- shapes ---------------------------------------------------------------------------

// Extents of a shape header and codes; data-carrying arrays are limited to maxElements
// (larger shapes are folded down deterministically), opaque ones are not.
std::vector<std::uint64_t> extentsOf(const std::vector<std::uint8_t>& shape,
                                     std::uint64_t maxElements);
std::uint64_t elementCountOf(const std::vector<std::uint64_t>& extents);

inline constexpr std::uint64_t kMaxDataElements = 4096;
inline constexpr std::uint64_t kMaxNestedElements = 12;

// Number of data bytes a Numeric, Char or Logical description carries.
std::size_t dataBytesOf(const ArgSpec& arg);
// Bytes per element of the numeric class selected by a (0: double ... 9: uint64).
std::size_t numericWidth(std::uint8_t classCode);

// ---- the two directions -----------------------------------------------------------------

// The input count of each row of the library's table by index; -1 past its end.
std::vector<int> rowInputCounts();
// rowInputs[op] is the input count of operation op, or -1 where op names no row.
Program decode(std::span<const std::uint8_t> bytes, std::span<const int> rowInputs);
std::vector<std::uint8_t> encode(Program program, std::span<const int> rowInputs);

// Number of inputs a call passes, given the row's own count (or -1 for a bogus name).
std::size_t inputCountOf(const Call& call, int rowInputs);
// nlhs the call passes.
int outputCountOf(const Call& call, int rowOutputs);

}  // namespace fuzz
