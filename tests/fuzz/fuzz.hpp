// The parts of the fuzz harness: inputs read into host arrays, a private work directory
// with fixture files, and the limits on what a call may cost.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "gateway/operation.hpp"
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

// False for calls that would legitimately ask for more memory or disk than a fuzzing
// process should spend; values the library must refuse always pass.
bool affordable(const OperationRow& row, std::span<const qvArray* const> inputs);

// Writes the fixture files, "<word>.nc" for each word of kFixtures but the last two.
void writeFixtures(const std::filesystem::path& dir);
inline constexpr std::array<const char*, 10> kFixtures = {
    "classic", "offset",  "cdf5",      "nc4classic", "nc4",
    "empty",   "garbage", "truncated", "dir",        "missing"};

// Every file name a call passes is rewritten into a temporary directory made once per
// process; after each input every file it opened is closed, netCDF-C's process-wide
// settings are restored and the directory is emptied, so that inputs do not see each other
// and leaks stay visible.
class Workspace {
 public:
  static Workspace& instance();
  // The file name a call really gets: "#nc4" and the other fixtures, "#url" (a closed
  // local port), or a name directly inside the work directory.
  qvArrayPtr fileArgument(const std::u16string& text);
  // Closes what the input left open; returns how many netCDF ids were open without the
  // input ever having been given them.
  std::size_t endInput(CallHistory& history);
  // Descriptors of this process still open on the private directory.
  std::size_t openDescriptors() const;

 private:
  Workspace();
  ~Workspace();
  std::filesystem::path root_, work_;
  std::size_t cacheSize_ = 0, cacheElements_ = 0;
  float cachePreemption_ = 0.0f;
};

// Remembers what a call returned: ids into their pools, arrays for reuse.
void harvest(const OperationRow& row, const qvArrayPtr* outputs, std::size_t n,
             CallHistory& history);

}  // namespace fuzz
