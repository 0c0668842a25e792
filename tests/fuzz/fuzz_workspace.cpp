// The fuzzer's private corner of the file system, and what it keeps of earlier calls.
#include <netcdf.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string_view>
#include <tuple>

#include "fuzz.hpp"
#include "gateway/registry.hpp"

namespace fuzz {

namespace {

constexpr std::size_t kPoolLimit = 32;
constexpr std::size_t kOutputLimit = 24;
// netCDF-C numbers open files as (slot << 16); an input opens far fewer than this.
constexpr int kSlotsSwept = 512;

std::filesystem::path makePrivateRoot() {
  const char* tmp = std::getenv("TMPDIR");
  std::string pattern = (std::filesystem::path(tmp != nullptr && *tmp != '\0' ? tmp : "/tmp") /
                         "netcdflib-fuzz-XXXXXX")
                            .string();
  if (mkdtemp(pattern.data()) == nullptr) {
    std::perror("netcdflib_fuzzer: mkdtemp");
    std::abort();
  }
  return pattern;
}

void toPool(CallHistory& history, Pool pool, const qvArray* a) {
  if (a == nullptr || qvGetClassID(a) != qvDOUBLE_CLASS || qvIsComplex(a)) return;
  auto& ids = history.pool(pool);
  const auto* values = static_cast<const double*>(qvGetData(a));
  for (std::size_t i = 0; i < qvGetNumberOfElements(a) && ids.size() < kPoolLimit; ++i) {
    ids.push_back(values[i]);
  }
}

}  // namespace

Workspace& Workspace::instance() {
  static Workspace workspace;
  return workspace;
}

Workspace::Workspace() : root_(makePrivateRoot()), work_(root_ / "work") {
  std::filesystem::create_directories(work_);
  writeFixtures(root_ / "fixtures");
  nc_get_chunk_cache(&cacheSize_, &cacheElements_, &cachePreemption_);
}

Workspace::~Workspace() {
  std::error_code ignored;
  std::filesystem::remove_all(root_, ignored);
}

qvArrayPtr Workspace::fileArgument(const std::u16string& text) {
  // A local port nothing listens on.
  if (text == u"#url") return matrix::create(u"http://127.0.0.1:1/nothing.nc", 29);
  const std::string word(text.begin(), text.end());
  if (!text.empty() && text[0] == u'#' && text.size() < 16 &&
      std::find(kFixtures.begin(), kFixtures.end(), word.substr(1)) != kFixtures.end()) {
    // Laid out on first use; later calls of the input see what earlier ones made of it.
    const std::string name = word.substr(1);
    const auto path = work_ / (name + (name == "dir" ? "" : ".nc"));
    std::error_code ignored;
    if (name == "dir") std::filesystem::create_directories(path);
    if (!std::filesystem::exists(path) && name != "missing") {
      std::filesystem::copy_file(root_ / "fixtures" / (name + ".nc"), path, ignored);
    }
    const std::string s = path.string();
    return matrix::create(s.data(), s.size());
  }
  // Anything else names a file directly inside the work directory: no separators, and a
  // leading letter so that "." and ".." stay plain names.
  const std::string prefix = (work_ / "f").string();
  std::u16string full(prefix.begin(), prefix.end());
  for (const char16_t u : text) full += u == u'/' ? u'_' : u;
  return matrix::create(full.data(), full.size());
}

std::size_t Workspace::endInput(CallHistory& history) {
  const std::vector<int> registered = OpenFileRegistry::ids();
  std::set<int> ids(registered.begin(), registered.end());
  for (const double id : history.pool(Pool::Ncid)) {
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
  nc_set_chunk_cache(cacheSize_, cacheElements_, cachePreemption_);
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(work_, ignored)) {
    std::filesystem::remove_all(entry.path(), ignored);
  }
  return strays;
}

std::size_t Workspace::openDescriptors() const {
  std::error_code ignored;
  std::size_t n = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", ignored)) {
    n += std::filesystem::read_symlink(entry.path(), ignored).string().starts_with(root_.string());
  }
  return n;
}

void harvest(const OperationRow& row, const qvArrayPtr* outputs, std::size_t n,
             CallHistory& history) {
  // Rows whose outputs are ids: the pool, the output, the rows.
  static const std::vector<std::tuple<Pool, std::size_t, std::vector<std::string_view>>> kIds = {
      {Pool::Ncid,
       0,
       {"create", "open", "defGrp", "inqNcid", "inqGrpParent", "inqGrps", "openMem", "createMem"}},
      {Pool::Ncid, 1, {"pCreate", "pOpen"}},
      {Pool::Varid, 0, {"defVar", "inqVarID", "inqVarIDs"}},
      {Pool::Dimid, 0, {"defDim", "inqDimID", "inqDimIDs", "inqUnlimDims"}},
      {Pool::Typeid, 1, {"inqVar"}},
      {Pool::Dimid, 2, {"inqVar"}},
      {Pool::Typeid, 0, {"defVlen", "inqAtt", "defEnum", "defCompound", "defOpaque"}},
      {Pool::Typeid, 2, {"inqVlen", "inqUserType"}},
      {Pool::Attnum, 0, {"inqAttID"}}};
  for (const auto& [pool, output, names] : kIds) {
    if (output < n && std::find(names.begin(), names.end(), row.name) != names.end()) {
      toPool(history, pool, outputs[output].get());
    }
  }
  for (std::size_t i = 0; i < n; ++i) {
    const qvArray* a = outputs[i].get();
    if (a != nullptr && qvGetClassID(a) == qvDOUBLE_CLASS && qvGetNumberOfElements(a) == 1) {
      toPool(history, Pool::Number, a);
    }
    if (a != nullptr && history.outputs.size() < kOutputLimit)
      history.outputs.push_back(qvShareArray(a));
  }
}

}  // namespace fuzz
