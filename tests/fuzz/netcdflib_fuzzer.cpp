// Coverage-guided fuzzing of the entry point. Each input decodes into a few calls of
// netcdflib with host arrays of every class and shape; ids that earlier calls returned
// feed later ones. A call must return or raise a message-ID error: any other exception,
// a write past the output slots, or a file left open behind the caller's back aborts, so
// that libFuzzer reports the input (crashes, leaks and undefined behaviour are the
// sanitizers').
#include <netcdf.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

#include "fuzz_arrays.hpp"
#include "fuzz_budget.hpp"
#include "fuzz_program.hpp"
#include "fuzz_stats.hpp"
#include "fuzz_workspace.hpp"
#include "gateway/netcdflib.hpp"
#include "gateway/operation.hpp"
#include "gateway/row_shapes.hpp"
#include "qvhost/qvhost.hpp"

namespace {

using fuzz::Stats;

// Names that are not the table's, and first inputs that are not names at all.
enum class NameKind { Text, None, Double, String, Column };
struct BogusName {
  NameKind kind;
  std::u16string text;
};

const std::vector<BogusName>& bogusNames() {
  static const std::vector<BogusName> names = {
      {NameKind::Text, u""},
      {NameKind::Text, u"OPEN"},
      {NameKind::Text, u"Open"},
      {NameKind::Text, u"putVar1Uint64"},
      {NameKind::Text, u"putVar1Uint"},
      {NameKind::Text, u"getvardouble"},
      {NameKind::Text, u"inqDimIDs "},
      {NameKind::Text, std::u16string(u"close\0x", 7)},
      {NameKind::Text, u"abortX"},
      {NameKind::Text, std::u16string(300, u'q')},
      {NameKind::Text, u"p\u00e9"},
      {NameKind::Text, u"in\xD800q"},
      {NameKind::None, u""},
      {NameKind::Double, u""},
      {NameKind::String, u"inq"},
      {NameKind::Column, u"inq"},
  };
  return names;
}

qvArrayPtr nameArray(const BogusName& name) {
  switch (name.kind) {
    case NameKind::Double: {
      const std::array<std::uint64_t, 2> dims{1, 1};
      return matrix::detail::do_create_numeric(dims, qvDOUBLE_CLASS, qvREAL);
    }
    case NameKind::String:
      return createStringArray(name.text);
    case NameKind::Column: {
      const std::array<std::uint64_t, 2> dims{name.text.size(), 1};
      qvArrayPtr a = matrix::detail::do_create_numeric(dims, qvCHAR_CLASS, qvREAL);
      std::memcpy(qvGetData(a.get()), name.text.data(), name.text.size() * sizeof(char16_t));
      return a;
    }
    default:
      return matrix::create(name.text.data(), name.text.size());
  }
}

bool takesFileName(const OperationRow& row) {
  return std::strcmp(row.name, "create") == 0 || std::strcmp(row.name, "pCreate") == 0 ||
         std::strcmp(row.name, "open") == 0 || std::strcmp(row.name, "pOpen") == 0;
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

// The row lookup will settle on for this call, if any: the first of its name.
const OperationRow* rowOf(const fuzz::Call& call) {
  const auto table = operationTable();
  if (call.op >= table.size()) return nullptr;
  for (const OperationRow& row : table) {
    if (std::strcmp(row.name, table[call.op].name) == 0) return &row;
  }
  return nullptr;
}

void runCall(const fuzz::Call& call, fuzz::CallHistory& history) {
  const auto table = operationTable();
  const bool known = call.op < table.size();
  const BogusName& bogus = bogusNames()[(call.op - table.size()) % bogusNames().size()];
  const qvArrayPtr name =
      known ? matrix::create(table[call.op].name, std::strlen(table[call.op].name))
            : nameArray(bogus);

  std::vector<qvArrayPtr> owned;
  for (const fuzz::ArgSpec& arg : call.args) owned.push_back(fuzz::buildArray(arg, history));
  const OperationRow* row = rowOf(call);
  const bool reaches = row != nullptr && static_cast<std::size_t>(row->nInputs) == owned.size();
  if (reaches && takesFileName(*row) && qvGetClassID(owned[0].get()) == qvCHAR_CLASS) {
    owned[0] = fuzz::Workspace::instance().fileArgument(matrix::get_ustring(owned[0].get()));
  }
  std::vector<const qvArray*> prhs;
  if (known || bogus.kind != NameKind::None) prhs.push_back(name.get());
  for (const qvArrayPtr& a : owned) prhs.push_back(a.get());
  if (reaches && !fuzz::affordable(*row, std::span(prhs).subspan(1))) {
    ++Stats::instance().skipped;
    return;
  }

  Stats& stats = Stats::instance();
  const std::size_t rowIndex = reaches ? static_cast<std::size_t>(row - table.data()) : 0;
  ++stats.calls;
  if (reaches) ++stats.rowReached[rowIndex];
  // Two guard slots past the most any operation may fill.
  std::array<qvArrayPtr, kNetcdflibMaxOutputs + 2> slots;
  try {
    const int nlhs = fuzz::outputCountOf(call, reaches ? outputCount(*row) : kNetcdflibMaxOutputs);
    netcdflib(nlhs, slots.data(), static_cast<int>(prhs.size()), prhs.data());
    ++stats.normal;
    if (reaches) ++stats.rowNormal[rowIndex];
    if (tracing()) std::fprintf(stderr, "  %s: returned\n", known ? table[call.op].name : "?");
  } catch (const foundation::core::except::IMsgIDException& e) {
    ++stats.messageId;
    // Every error the library raises has its catalogue text, each placeholder filled.
    const std::string id = e.get_error_id();
    const std::u16string text = e.GetUnicodeMessageTxt();
    const auto* plain = dynamic_cast<const std::exception*>(&e);
    if (!resource_core::catalogueHas(id) || text.find(u"{1}") != std::u16string::npos ||
        plain == nullptr || std::string_view(plain->what()).substr(0, id.size()) != id) {
      finding("message-ID error without its text", id);
    }
    if (tracing()) {
      std::fprintf(stderr, "  %s: %s\n", known ? table[call.op].name : "?",
                   e.get_error_id().c_str());
    }
  } catch (const std::exception& e) {
    finding("exception that is not a message-ID error",
            std::string(typeid(e).name()) + ": " + e.what());
  } catch (...) {
    finding("exception that is not a message-ID error", "of unknown type");
  }
  for (std::size_t i = kNetcdflibMaxOutputs; i < slots.size(); ++i) {
    if (slots[i]) finding("output written past the last slot", row ? row->name : "?");
  }
  if (reaches) fuzz::harvest(*row, slots.data(), kNetcdflibMaxOutputs, history);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::Workspace::instance();
  // Warnings of unload are not what is tested here.
  qvSetWarningHandler([](const resource_core::BaseMsgID&, const std::u16string&) {});
  // Made before the handler is registered, so that it is destroyed after the report.
  Stats::instance();
  std::atexit([] {
    Stats::instance().report();
    // Every input closes what it opened; anything open now escaped that.
    int open = 0;
    for (int slot = 1; slot < 65536; ++slot) {
      int format = 0;
      open += nc_inq_format(slot << 16, &format) == NC_NOERR ? 1 : 0;
    }
    if (open != 0) std::fprintf(stderr, "netcdflib_fuzzer: %d files open at exit\n", open);
  });
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::vector<int> counts = fuzz::rowInputCounts();
  const fuzz::Program program = fuzz::decode({data, size}, counts);
  // Figures along the way too: a run that ends abruptly still leaves them.
  if (++Stats::instance().inputs % 100000 == 0) Stats::instance().report();
  if (tracing()) std::fprintf(stderr, "input of %zu calls\n", program.size());
  fuzz::CallHistory history;
  for (const fuzz::Call& call : program) runCall(call, history);
  fuzz::Workspace& workspace = fuzz::Workspace::instance();
  const std::size_t strays = workspace.endInput(history);
  if (strays != 0)
    finding("files left open whose ids never reached the caller", std::to_string(strays));
  // netCDF-C or HDF5 holding a file after netCDF-C has let go of it.
  if (const std::size_t held = workspace.openDescriptors(); held != 0)
    finding("descriptors of closed files still open", std::to_string(held));
  return 0;
}
