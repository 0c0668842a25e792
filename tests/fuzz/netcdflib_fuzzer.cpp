// Coverage-guided fuzzing of the entry point. Each input reads as up to eight calls of
// netcdflib: an operation byte (a row of the table, or past its end a name that is not
// one), an input count byte (below 0xF0 the row's own count), then the inputs. A call
// must return or raise a message-ID error: any other exception, a write past the output
// slots, or a file left open behind the caller's back aborts, so that libFuzzer reports
// the input (crashes, leaks and undefined behaviour are the sanitizers').
#include <netcdf.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <optional>
#include <set>
#include <string_view>
#include <tuple>
#include <typeinfo>

#include "fuzz.hpp"
#include "gateway/netcdflib.hpp"
#include "gateway/registry.hpp"
#include "gateway/row_shapes.hpp"
#include "qvhost/qvhost.hpp"

namespace {

constexpr std::size_t kMaxCalls = 8;
constexpr std::size_t kMaxInputs = 7;  // one more than any row takes
constexpr std::size_t kPoolLimit = 32;
constexpr std::size_t kOutputLimit = 24;
// netCDF-C numbers open files as (slot << 16); an input opens far fewer than this.
constexpr int kSlotsSwept = 512;

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

// Calls the harness does not make because they would legitimately ask for more memory or
// disk than a fuzzing process should spend: variables of millions of elements, huge size
// hints, writes far beyond the end of an unlimited dimension. Values the library must
// refuse (negative, non-finite, out of range) always pass, so their errors stay tested.

// A variable may hold this many elements at most: 2 MiB of doubles, and well under the
// fuzzer's memory limit for strings and variable-length data under AddressSanitizer.
constexpr double kMaxVariableElements = 262144.0;
// An unlimited dimension can grow this far under the write limits below.
constexpr double kUnlimitedEstimate = 32768.0;
constexpr double kMaxWriteStart = 64.0;
constexpr double kMaxWriteStride = 4.0;
constexpr double kTwoTo64 = 18446744073709551616.0;

// An id as the library would read it, when it would read one at all.
std::optional<int> idOf(const qvArray* a) {
  const std::vector<double> v = fuzz::numericValues(a);
  if (v.size() != 1 || !(v[0] > -2147483649.0 && v[0] < 2147483648.0)) return std::nullopt;
  return static_cast<int>(v[0]);
}

// Large but representable as a size: what netCDF-C would take at its word.
bool anyLarge(const qvArray* a, double limit) {
  const std::vector<double> v = fuzz::numericValues(a);
  return std::any_of(v.begin(), v.end(), [&](double x) { return x > limit && x < kTwoTo64; });
}

// A new variable's elements, unlimited dimensions as grown by the write limits below.
// Existing variables need no check: the fixtures' are small, and every other variable was
// defined through this one, with dimension ids only ever of class double.
bool smallVariableDefinition(const qvArray* const* inputs) {
  const auto ncid = idOf(inputs[0]);
  if (!ncid || qvGetClassID(inputs[3]) != qvDOUBLE_CLASS) return true;
  int nunlim = 0;
  std::vector<int> unlimited(NC_MAX_DIMS);
  if (nc_inq_unlimdims(*ncid, &nunlim, unlimited.data()) != NC_NOERR) nunlim = 0;
  double elements = 1.0;
  for (const double id : fuzz::numericValues(inputs[3])) {
    std::size_t len = 0;
    if (!(std::fabs(id) < 2147483648.0) || nc_inq_dimlen(*ncid, int(id), &len) != NC_NOERR)
      continue;
    const bool isUnlimited =
        std::count(unlimited.begin(), unlimited.begin() + nunlim, int(id)) != 0;
    elements *= std::max(static_cast<double>(len), isUnlimited ? kUnlimitedEstimate : 0.0);
  }
  return elements <= kMaxVariableElements;
}

bool smallChunks(const qvArray* chunks) {
  const std::vector<double> v = fuzz::numericValues(chunks);
  double bytes = 8.0;
  for (const double c : v) {
    if (c > 65536.0 && c < kTwoTo64) return false;
    if (c >= 1.0 && c < kTwoTo64) bytes *= c;
  }
  return bytes <= 64.0 * 1024 * 1024;
}

bool affordable(const OperationRow& row, std::span<const qvArray* const> inputs) {
  const std::string_view name = row.name;
  const std::size_t n = inputs.size();
  if (name == "defVar") return smallVariableDefinition(inputs.data());
  if (name.starts_with("putVar") && n >= 4) {
    // Subset writes: far starts and strides grow unlimited dimensions (and classic files
    // with their fill values) without bound.
    if (anyLarge(inputs[2], kMaxWriteStart)) return false;
    if (n == 6 && anyLarge(inputs[4], kMaxWriteStride)) return false;
    return true;
  }
  if (name == "defVarChunking") return smallChunks(inputs[3]);
  if (name == "pCreate") return !anyLarge(inputs[2], 1 << 24) && !anyLarge(inputs[3], 1 << 24);
  if (name == "pOpen") return !anyLarge(inputs[2], 1 << 24);
  if (name == "createMem") return !anyLarge(inputs[2], 1 << 24);
  if (name == "setChunkCache") {
    return !anyLarge(inputs[0], 1 << 26) && !anyLarge(inputs[1], 1 << 16);
  }
  if (name == "pEndDef") {
    return std::none_of(inputs.begin() + 1, inputs.end(),
                        [](const qvArray* a) { return anyLarge(a, 1 << 20); });
  }
  return true;
}

std::filesystem::path makePrivateRoot() {
  std::string pattern = (std::filesystem::temp_directory_path() / "netcdflib-fuzz-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    std::perror("netcdflib_fuzzer: mkdtemp");
    std::abort();
  }
  return pattern;
}

void toPool(fuzz::CallHistory& history, fuzz::Pool pool, const qvArray* a) {
  if (a == nullptr || qvGetClassID(a) != qvDOUBLE_CLASS || qvIsComplex(a)) return;
  auto& ids = history.pool(pool);
  const auto* values = static_cast<const double*>(qvGetData(a));
  for (std::size_t i = 0; i < qvGetNumberOfElements(a) && ids.size() < kPoolLimit; ++i) {
    ids.push_back(values[i]);
  }
}

// Every file name a call passes is rewritten into a temporary directory made once per
// process; after each input every file it opened is closed, netCDF-C's process-wide
// settings are restored and the directory is emptied, so that inputs do not see each other
// and leaks stay visible.
struct Workspace {
  std::filesystem::path root = makePrivateRoot(), work = root / "work";
  std::size_t cacheSize = 0, cacheElements = 0;
  float cachePreemption = 0.0f;

  Workspace() {
    std::filesystem::create_directories(work);
    fuzz::writeFixtures(root / "fixtures");
    nc_get_chunk_cache(&cacheSize, &cacheElements, &cachePreemption);
  }
  ~Workspace() {
    std::error_code ignored;
    std::filesystem::remove_all(root, ignored);
  }

  // The file name a call really gets: "#nc4" and the other fixtures, "#url", or a name
  // directly inside the work directory.
  qvArrayPtr fileArgument(const std::u16string& text) {
    // A local port nothing listens on.
    if (text == u"#url") return matrix::create(u"http://127.0.0.1:1/nothing.nc", 29);
    const std::string word(text.begin(), text.end());
    if (!text.empty() && text[0] == u'#' && text.size() < 16 &&
        std::find(fuzz::kFixtures.begin(), fuzz::kFixtures.end(), word.substr(1)) !=
            fuzz::kFixtures.end()) {
      // Laid out on first use; later calls of the input see what earlier ones made of it.
      const std::string name = word.substr(1);
      const auto path = work / (name + (name == "dir" ? "" : ".nc"));
      std::error_code ignored;
      if (name == "dir") std::filesystem::create_directories(path);
      if (!std::filesystem::exists(path) && name != "missing") {
        std::filesystem::copy_file(root / "fixtures" / (name + ".nc"), path, ignored);
      }
      const std::string s = path.string();
      return matrix::create(s.data(), s.size());
    }
    // Anything else names a file directly inside the work directory: no separators, and a
    // leading letter so that "." and ".." stay plain names.
    const std::string prefix = (work / "f").string();
    std::u16string full(prefix.begin(), prefix.end());
    for (const char16_t u : text) full += u == u'/' ? u'_' : u;
    return matrix::create(full.data(), full.size());
  }

  // Closes what the input left open; returns how many netCDF ids were open without the
  // input ever having been given them.
  std::size_t endInput(fuzz::CallHistory& history) {
    const std::vector<int> registered = OpenFileRegistry::ids();
    std::set<int> ids(registered.begin(), registered.end());
    for (const double id : history.pool(fuzz::Pool::Ncid)) {
      if (std::isfinite(id) && std::fabs(id) < 2147483647.0) ids.insert(static_cast<int>(id));
    }
    for (const int id : ids) {
      // netCDF-C 4.9.0 cannot close a netCDF-4 file after some failed definitions (an
      // attribute of an invalid type, say); aborting still releases it.
      if (nc_close(id) != NC_NOERR) nc_abort(id);
      OpenFileRegistry::remove(id);
    }
    // Whatever is still open was opened by a call whose id never came back.
    std::size_t strays = 0;
    for (int slot = 1; slot < kSlotsSwept; ++slot) {
      int format = 0;
      if (nc_inq_format(slot << 16, &format) == NC_NOERR) {
        ++strays;
        if (nc_close(slot << 16) != NC_NOERR) nc_abort(slot << 16);
      }
    }
    nc_set_default_format(NC_FORMAT_CLASSIC, nullptr);
    nc_set_chunk_cache(cacheSize, cacheElements, cachePreemption);
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(work, ignored)) {
      std::filesystem::remove_all(entry.path(), ignored);
    }
    return strays;
  }

  // Descriptors of this process still open on the private directory.
  std::size_t openDescriptors() const {
    std::error_code ignored;
    std::size_t n = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", ignored)) {
      n += std::filesystem::read_symlink(entry.path(), ignored).string().starts_with(root.string());
    }
    return n;
  }
};

Workspace& workspace() {
  static Workspace instance;
  return instance;
}

// Remembers what a call returned: ids into their pools, arrays for reuse.
void harvest(const OperationRow& row, const qvArrayPtr* outputs, std::size_t n,
             fuzz::CallHistory& history) {
  // Rows whose outputs are ids: the pool, the output, the rows.
  static const std::vector<std::tuple<fuzz::Pool, std::size_t, std::vector<std::string_view>>>
      kIds = {{fuzz::Pool::Ncid,
               0,
               {"create", "open", "defGrp", "inqNcid", "inqGrpParent", "inqGrps", "openMem",
                "createMem"}},
              {fuzz::Pool::Ncid, 1, {"pCreate", "pOpen"}},
              {fuzz::Pool::Varid, 0, {"defVar", "inqVarID", "inqVarIDs"}},
              {fuzz::Pool::Dimid, 0, {"defDim", "inqDimID", "inqDimIDs", "inqUnlimDims"}},
              {fuzz::Pool::Typeid, 1, {"inqVar"}},
              {fuzz::Pool::Dimid, 2, {"inqVar"}},
              {fuzz::Pool::Typeid, 0, {"defVlen", "inqAtt", "defEnum", "defCompound", "defOpaque"}},
              {fuzz::Pool::Typeid, 2, {"inqVlen", "inqUserType"}},
              {fuzz::Pool::Attnum, 0, {"inqAttID"}}};
  for (const auto& [pool, output, names] : kIds) {
    if (output < n && std::find(names.begin(), names.end(), row.name) != names.end()) {
      toPool(history, pool, outputs[output].get());
    }
  }
  for (std::size_t i = 0; i < n; ++i) {
    const qvArray* a = outputs[i].get();
    if (a != nullptr && qvGetClassID(a) == qvDOUBLE_CLASS && qvGetNumberOfElements(a) == 1) {
      toPool(history, fuzz::Pool::Number, a);
    }
    if (a != nullptr && history.outputs.size() < kOutputLimit)
      history.outputs.push_back(qvShareArray(a));
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
    owned[0] = workspace().fileArgument(matrix::get_ustring(owned[0].get()));
  }
  std::vector<const qvArray*> prhs;
  if (name) prhs.push_back(name.get());
  for (const qvArrayPtr& a : owned) prhs.push_back(a.get());
  if (reaches && !affordable(*row, std::span(prhs).subspan(1))) {
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
  if (reaches) harvest(*row, slots.data(), kNetcdflibMaxOutputs, history);
}

}  // namespace

// netCDF-C 4.9.0 keeps the buffer it read a file into for a diskless open that then fails
// on a damaged classic header (4096 bytes; a plain C program doing only that leaks the
// same). Suppressed for fuzzing alone: allocation stacks end inside netCDF-C, so this also
// hides an in-memory image netcdflib might leak, which the other tests, run without it, catch.
extern "C" const char* __lsan_default_suppressions() { return "leak:memio_open\n"; }

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  workspace();
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
  if (const std::size_t strays = workspace().endInput(history); strays != 0) {
    finding("files left open whose ids never reached the caller", std::to_string(strays));
  }
  // netCDF-C or HDF5 holding a file after netCDF-C has let go of it.
  if (const std::size_t held = workspace().openDescriptors(); held != 0) {
    finding("descriptors of closed files still open", std::to_string(held));
  }
  return 0;
}
