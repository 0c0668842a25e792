// Host arrays from argument descriptions: every class, shape and size a host can pass,
// with ids and arrays that earlier calls of the same input returned.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz_program.hpp"
#include "qvhost/array.hpp"

namespace fuzz {

// What earlier calls of one input returned.
struct CallHistory {
  std::array<std::vector<double>, static_cast<std::size_t>(Pool::kCount)> ids;
  std::vector<qvArrayPtr> outputs;

  std::vector<double>& pool(Pool p) { return ids[static_cast<std::size_t>(p)]; }
  const std::vector<double>& pool(Pool p) const { return ids[static_cast<std::size_t>(p)]; }
};

qvArrayPtr buildArray(const ArgSpec& arg, const CallHistory& history, int depth = 0);

// The first values (at most limit) of a real numeric array as doubles; nothing for every
// other array.
std::vector<double> numericValues(const qvArray* a, std::size_t limit = SIZE_MAX);

// The dictionary of Word arguments; words starting with '#' name fixture files.
const std::vector<std::string>& dictionary();
// Index of a word in the dictionary (for the seed generator); throws if absent.
std::uint8_t wordIndex(const std::string& word);

// The code unit a Char data byte stands for: ASCII below 0x80, else a unit from a table
// of awkward ones (surrogates, NUL, non-characters, CJK, ...).
char16_t unitOf(std::uint8_t byte);

}  // namespace fuzz
