// What the fuzzer has done: calls by outcome, and which operation rows and handlers its
// inputs reached, printed when the process ends.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace fuzz {

struct Stats {
  std::uint64_t inputs = 0;
  std::uint64_t calls = 0;
  std::uint64_t normal = 0;               // returned
  std::uint64_t messageId = 0;            // raised a message-ID error
  std::uint64_t skipped = 0;              // not made: over the resource budget
  std::vector<std::uint64_t> rowReached;  // by table row: the handler was called
  std::vector<std::uint64_t> rowNormal;   // by table row: the handler returned

  static Stats& instance();
  // Prints the summary; with NETCDFLIB_FUZZ_STATS=verbose also every row not reached or
  // never returning. Exits with status 3 when NETCDFLIB_FUZZ_REQUIRE_HANDLERS is set and a
  // handler of the table was never called.
  void report() const;
};

}  // namespace fuzz
