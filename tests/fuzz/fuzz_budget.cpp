// Calls the harness does not make because they would legitimately ask for more memory or
// disk than a fuzzing process should spend: variables of millions of elements, huge size
// hints, writes far beyond the end of an unlimited dimension.
#include <netcdf.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "fuzz.hpp"

namespace fuzz {

namespace {

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
  const std::vector<double> v = numericValues(a);
  if (v.size() != 1 || !(v[0] > -2147483649.0 && v[0] < 2147483648.0)) return std::nullopt;
  return static_cast<int>(v[0]);
}

// Large but representable as a size: what netCDF-C would take at its word.
bool anyLarge(const qvArray* a, double limit) {
  const std::vector<double> v = numericValues(a);
  return std::any_of(v.begin(), v.end(), [&](double x) { return x > limit && x < kTwoTo64; });
}

// Elements of a variable over these dimensions, unlimited ones as grown when asked.
bool smallVariable(int ncid, const std::vector<int>& dimids, bool grown) {
  int nunlim = 0;
  std::vector<int> unlimited(NC_MAX_DIMS);
  if (!grown || nc_inq_unlimdims(ncid, &nunlim, unlimited.data()) != NC_NOERR) nunlim = 0;
  double elements = 1.0;
  for (const int dimid : dimids) {
    std::size_t len = 0;
    if (nc_inq_dimlen(ncid, dimid, &len) != NC_NOERR) continue;
    const bool isUnlimited = std::count(unlimited.begin(), unlimited.begin() + nunlim, dimid) != 0;
    elements *= std::max(static_cast<double>(len), isUnlimited ? kUnlimitedEstimate : 0.0);
  }
  return elements <= kMaxVariableElements;
}

bool smallVariableDefinition(const qvArray* const* inputs) {
  const auto ncid = idOf(inputs[0]);
  if (!ncid || qvGetClassID(inputs[3]) != qvDOUBLE_CLASS) return true;
  std::vector<int> dimids;
  for (const double id : numericValues(inputs[3])) {
    if (std::isfinite(id) && std::fabs(id) < 2147483648.0) dimids.push_back(static_cast<int>(id));
  }
  return smallVariable(*ncid, dimids, true);
}

bool smallExistingVariable(const qvArray* const* inputs) {
  const auto ncid = idOf(inputs[0]);
  const auto varid = idOf(inputs[1]);
  int ndims = 0;
  std::vector<int> dimids(NC_MAX_VAR_DIMS);
  if (!ncid || !varid ||
      nc_inq_var(*ncid, *varid, nullptr, nullptr, &ndims, dimids.data(), nullptr) != NC_NOERR) {
    return true;
  }
  dimids.resize(ndims);
  return smallVariable(*ncid, dimids, false);
}

bool smallChunks(const qvArray* chunks) {
  const std::vector<double> v = numericValues(chunks);
  double bytes = 8.0;
  for (const double c : v) {
    if (c > 65536.0 && c < kTwoTo64) return false;
    if (c >= 1.0 && c < kTwoTo64) bytes *= c;
  }
  return bytes <= 64.0 * 1024 * 1024;
}

}  // namespace

bool affordable(const OperationRow& row, std::span<const qvArray* const> inputs) {
  const std::string_view name = row.name;
  const std::size_t n = inputs.size();
  if (name == "defVar") return smallVariableDefinition(inputs.data());
  if (name.starts_with("getVar")) return smallExistingVariable(inputs.data());
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

}  // namespace fuzz
