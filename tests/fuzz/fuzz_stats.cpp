#include "fuzz_stats.hpp"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>

#include "gateway/operation.hpp"

namespace fuzz {

Stats& Stats::instance() {
  static Stats stats = [] {
    Stats s;
    s.rowReached.assign(operationTable().size(), 0);
    s.rowNormal.assign(operationTable().size(), 0);
    return s;
  }();
  return stats;
}

void Stats::report() const {
  const auto table = operationTable();
  // A row is reachable when it is the first of its name: lookup never gets past that one.
  std::size_t reachable = 0, reached = 0, returned = 0;
  std::set<OperationHandler> handlers, handlersReached;
  const char* mode = std::getenv("NETCDFLIB_FUZZ_STATS");
  const bool verbose = mode != nullptr && std::strcmp(mode, "verbose") == 0;
  for (std::size_t i = 0; i < table.size(); ++i) {
    bool first = true;
    for (std::size_t j = 0; j < i; ++j)
      first = first && std::strcmp(table[j].name, table[i].name) != 0;
    if (!first) continue;
    ++reachable;
    handlers.insert(table[i].handler);
    if (rowReached[i] != 0) {
      ++reached;
      handlersReached.insert(table[i].handler);
    }
    if (rowNormal[i] != 0) ++returned;
    if (verbose && (rowReached[i] == 0 || rowNormal[i] == 0)) {
      std::fprintf(stderr, "netcdflib_fuzzer:   row %3zu %-18s reached %llu, returned %llu\n", i,
                   table[i].name, static_cast<unsigned long long>(rowReached[i]),
                   static_cast<unsigned long long>(rowNormal[i]));
    }
  }
  std::fprintf(stderr,
               "netcdflib_fuzzer: %llu inputs, %llu calls: %llu returned, %llu message-ID errors, "
               "%llu skipped (budget); rows reached %zu/%zu, rows returning %zu/%zu, handlers "
               "reached %zu/%zu\n",
               static_cast<unsigned long long>(inputs), static_cast<unsigned long long>(calls),
               static_cast<unsigned long long>(normal), static_cast<unsigned long long>(messageId),
               static_cast<unsigned long long>(skipped), reached, reachable, returned, reachable,
               handlersReached.size(), handlers.size());
  if (std::getenv("NETCDFLIB_FUZZ_REQUIRE_HANDLERS") != nullptr &&
      (handlersReached.size() != handlers.size() || reached != reachable)) {
    std::fprintf(stderr, "netcdflib_fuzzer: the corpus misses operations\n");
    std::fflush(stderr);
    std::_Exit(3);
  }
}

}  // namespace fuzz
