// The fuzzer's private corner of the file system and its per-input bookkeeping: every file
// name a fuzzed call passes is rewritten into a temporary directory made once per process,
// fixture files are laid out there on demand, and after each input every file the input
// opened is closed, netCDF-C's process-wide settings are restored and the directory is
// emptied, so that inputs do not see each other and leaks stay visible.
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "fuzz_arrays.hpp"
#include "gateway/operation.hpp"

namespace fuzz {

class Workspace {
 public:
  static Workspace& instance();

  // The file-name argument a call really gets for the fuzzed text: a fixture ("#nc4" ...),
  // a URL on a closed local port ("#url"), or a name inside the work directory.
  qvArrayPtr fileArgument(const std::u16string& text);

  // Files still open after an input: closes them, forgets them, and reports how many
  // netCDF ids were open without the input ever having been given them.
  std::size_t endInput(const CallHistory& history);

  // File descriptors of this process that still refer to the private directory: once
  // every file of an input is closed there should be none.
  std::size_t openDescriptors() const;

  const std::filesystem::path& workDir() const noexcept { return work_; }

 private:
  Workspace();
  ~Workspace();
  void materialize(const std::string& word, const std::filesystem::path& path);

  std::filesystem::path root_;
  std::filesystem::path work_;
  std::map<std::string, std::vector<char>> fixtures_;
  std::string closedPortUrl_;
  std::size_t defaultCacheSize_ = 0, defaultCacheElements_ = 0;
  float defaultCachePreemption_ = 0.0f;
};

// Writes the fixture files (valid netCDF files of every format, and broken ones) into dir
// and returns their bytes by dictionary word.
std::map<std::string, std::vector<char>> makeFixtures(const std::filesystem::path& dir);

// Remembers what a successful call returned: ids into their pools, arrays for reuse.
void harvest(const OperationRow& row, const qvArrayPtr* outputs, std::size_t n,
             CallHistory& history);

}  // namespace fuzz
