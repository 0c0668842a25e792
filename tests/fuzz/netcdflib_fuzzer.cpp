// Coverage-guided fuzzing of the entry point. Each input reads as up to eight calls of
// netcdflib: an operation byte (a row of the table, or past its end a name that is not
// one), an input count byte (below 0xF0 the row's own count), then the inputs. A call
// must return or raise a message-ID error: any other exception, a write past the output
// slots, or a file left open behind the caller's back aborts, so that libFuzzer reports
// the input (crashes, leaks and undefined behaviour are the sanitizers').
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <set>
#include <string_view>
#include <typeinfo>

#include "fuzz.hpp"
#include "gateway/netcdflib.hpp"
#include "gateway/row_shapes.hpp"
#include "qvhost/qvhost.hpp"

namespace {

constexpr std::size_t kMaxCalls = 8;
constexpr std::size_t kMaxInputs = 7;  // one more than any row takes

// Calls by outcome, and which rows' handlers were called and returned.
struct Stats {
  unsigned long long inputs = 0, calls = 0, returned = 0, errors = 0, skipped = 0;
  std::vector<bool> reached = std::vector<bool>(operationTable().size());
  std::vector<bool> returning = std::vector<bool>(operationTable().size());
};
Stats stats;

// Rows lookup can settle on: the first of each name. With NETCDFLIB_FUZZ_REQUIRE_HANDLERS
// set, a run that has not called the handlers of them all fails with status 3, naming the
// rows it missed.
void report() {
  const auto table = operationTable();
  std::set<std::string_view> names;
  std::size_t reached = 0, returning = 0;
  std::string missing;
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (!names.insert(table[i].name).second) continue;
    reached += stats.reached[i];
    returning += stats.returning[i];
    if (!stats.reached[i]) missing += std::string(" ") + table[i].name;
  }
  std::fprintf(stderr,
               "netcdflib_fuzzer: %llu inputs, %llu calls: %llu returned, %llu message-ID errors, "
               "%llu skipped (budget); rows reached %zu/%zu, rows returning %zu/%zu\n",
               stats.inputs, stats.calls, stats.returned, stats.errors, stats.skipped, reached,
               names.size(), returning, names.size());
  if (std::getenv("NETCDFLIB_FUZZ_REQUIRE_HANDLERS") != nullptr && reached != names.size()) {
    std::fprintf(stderr, "netcdflib_fuzzer: the corpus misses operations:%s\n", missing.c_str());
    std::fflush(stderr);
    std::_Exit(3);
  }
}

// First inputs that are not names of the table: wrong case, near misses, NUL, overlong,
// non-ASCII, a lone surrogate; none at all, a double, a string, a char column.
qvArrayPtr bogusName(std::size_t which) {
  // clang-format off
  static const std::u16string kTexts[] = {
      u"", u"OPEN", u"Open", u"putVar1Uint64", u"putVar1Uint", u"getvardouble", u"inqDimIDs ",
      std::u16string(u"close\0x", 7), u"abortX", std::u16string(300, u'q'), u"p\u00e9",
      u"in\xD800q"};
  // clang-format on
  const std::array<std::uint64_t, 2> scalar{1, 1}, column{3, 1};
  switch (which % 16) {
    case 12:
      return nullptr;
    case 13:
      return matrix::detail::do_create_numeric(scalar, qvDOUBLE_CLASS, qvREAL);
    case 14:
      return createStringArray(u"inq");
    case 15: {
      qvArrayPtr a = matrix::detail::do_create_numeric(column, qvCHAR_CLASS, qvREAL);
      std::memcpy(qvGetData(a.get()), u"inq", 3 * sizeof(char16_t));
      return a;
    }
    default:
      return matrix::create(kTexts[which % 16].data(), kTexts[which % 16].size());
  }
}

[[noreturn]] void finding(const char* what, const std::string& detail) {
  std::fprintf(stderr, "netcdflib_fuzzer: FINDING: %s: %s\n", what, detail.c_str());
  std::fflush(stderr);
  std::abort();
}

bool tracing() {
  static const bool on = std::getenv("NETCDFLIB_FUZZ_TRACE") != nullptr;
  return on;
}

void runCall(FuzzedDataProvider& in, fuzz::CallHistory& history) {
  const auto table = operationTable();
  const std::uint8_t op = in.ConsumeIntegral<std::uint8_t>();
  const std::uint8_t argc = in.ConsumeIntegral<std::uint8_t>();
  const bool known = op < table.size();
  const std::size_t nInputs =
      known && argc < 0xF0 ? table[op].nInputs : (argc & 0x0F) % (kMaxInputs + 1);
  std::vector<qvArrayPtr> owned;
  for (std::size_t i = 0; i < nInputs; ++i) owned.push_back(fuzz::readArray(in, history));

  // The row lookup settles on: the first of the name, when the count is its own.
  const OperationRow* row = nullptr;
  for (std::size_t i = 0; known && row == nullptr; ++i) {
    if (std::strcmp(table[i].name, table[op].name) == 0) row = &table[i];
  }
  const bool reaches = row != nullptr && static_cast<std::size_t>(row->nInputs) == nInputs;
  const char* label = known ? table[op].name : "?";
  const qvArrayPtr name = known ? matrix::create(table[op].name, std::strlen(table[op].name))
                                : bogusName(op - table.size());
  const std::string_view rowName = reaches ? row->name : "";
  if ((rowName == "create" || rowName == "open" || rowName == "pCreate" || rowName == "pOpen") &&
      qvGetClassID(owned[0].get()) == qvCHAR_CLASS) {
    owned[0] = fuzz::Workspace::instance().fileArgument(matrix::get_ustring(owned[0].get()));
  }
  std::vector<const qvArray*> prhs;
  if (name) prhs.push_back(name.get());
  for (const qvArrayPtr& a : owned) prhs.push_back(a.get());
  if (reaches && !fuzz::affordable(*row, std::span(prhs).subspan(1))) {
    ++stats.skipped;
    return;
  }

  ++stats.calls;
  if (reaches) stats.reached[row - table.data()] = true;
  // A row's own input count comes with no more outputs than it makes, so that the call
  // reaches its handler; a count of its own may ask for any number.
  const int nlhs =
      argc >= 0xF0 ? argc % 9 : argc % ((reaches ? outputCount(*row) : kNetcdflibMaxOutputs) + 1);
  // Two guard slots past the most any operation may fill.
  std::array<qvArrayPtr, kNetcdflibMaxOutputs + 2> slots;
  try {
    netcdflib(nlhs, slots.data(), static_cast<int>(prhs.size()), prhs.data());
    ++stats.returned;
    if (reaches) stats.returning[row - table.data()] = true;
    if (tracing()) std::fprintf(stderr, "  %s: returned\n", label);
  } catch (const foundation::core::except::IMsgIDException& e) {
    ++stats.errors;
    // Every error the library raises has its catalogue text, each placeholder filled.
    const std::string id = e.get_error_id();
    const auto* plain = dynamic_cast<const std::exception*>(&e);
    if (!resource_core::catalogueHas(id) ||
        e.GetUnicodeMessageTxt().find(u"{1}") != std::u16string::npos || plain == nullptr ||
        std::string_view(plain->what()).substr(0, id.size()) != id) {
      finding("message-ID error without its text", id);
    }
    if (tracing()) std::fprintf(stderr, "  %s: %s\n", label, id.c_str());
  } catch (const std::exception& e) {
    finding("exception that is not a message-ID error",
            std::string(typeid(e).name()) + ": " + e.what());
  } catch (...) {
    finding("exception that is not a message-ID error", "of unknown type");
  }
  if (slots[kNetcdflibMaxOutputs] || slots[kNetcdflibMaxOutputs + 1]) {
    finding("output written past the last slot", label);
  }
  if (reaches) fuzz::harvest(*row, slots.data(), kNetcdflibMaxOutputs, history);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::Workspace::instance();
  // Warnings of unload are not what is tested here.
  qvSetWarningHandler([](const resource_core::BaseMsgID&, const std::u16string&) {});
  std::atexit(report);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Figures along the way too: a run that ends abruptly still leaves them.
  if (++stats.inputs % 100000 == 0) report();
  FuzzedDataProvider in(data, size);
  fuzz::CallHistory history;
  for (std::size_t i = 0; i < kMaxCalls && in.remaining_bytes() != 0; ++i) runCall(in, history);
  fuzz::Workspace& workspace = fuzz::Workspace::instance();
  if (const std::size_t strays = workspace.endInput(history); strays != 0) {
    finding("files left open whose ids never reached the caller", std::to_string(strays));
  }
  // netCDF-C or HDF5 holding a file after netCDF-C has let go of it.
  if (const std::size_t held = workspace.openDescriptors(); held != 0) {
    finding("descriptors of closed files still open", std::to_string(held));
  }
  return 0;
}
