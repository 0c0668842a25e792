// The parts of the fuzz harness shared by its files: inputs read into host arrays, and
// the fixture files.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "qvhost/array.hpp"

namespace fuzz {

// Ids collected from earlier calls' outputs, and the outputs themselves, of one input.
enum class Pool : std::uint8_t { Ncid, Varid, Dimid, Typeid, Attnum, Number, kCount };
struct CallHistory {
  std::array<std::vector<double>, static_cast<std::size_t>(Pool::kCount)> ids;
  std::vector<qvArrayPtr> outputs;
  std::vector<double>& pool(Pool p) { return ids[static_cast<std::size_t>(p)]; }
};

// Reads one input array: of any class and shape, an id or array of an earlier call, a
// word of the dictionary. Structure bytes come from the end of the input, element data
// from the front. Null only for an element of a cell (depth > 0) left unset.
qvArrayPtr readArray(FuzzedDataProvider& in, CallHistory& history, int depth = 0);

// The values of a real numeric array as doubles; nothing for every other array.
std::vector<double> numericValues(const qvArray* a);

// Writes the fixture files, "<word>.nc" for each word of kFixtures but the last two.
void writeFixtures(const std::filesystem::path& dir);
inline constexpr std::array<const char*, 10> kFixtures = {
    "classic", "offset",  "cdf5",      "nc4classic", "nc4",
    "empty",   "garbage", "truncated", "dir",        "missing"};

}  // namespace fuzz
