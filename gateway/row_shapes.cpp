#include "gateway/row_shapes.hpp"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

struct Outputs {
  std::string_view name;
  int count;
};

// Every operation outside the typed data families that makes other than one output.
constexpr std::array kOutputCounts = {
    Outputs{"abort", 0},
    Outputs{"close", 0},
    Outputs{"copyAtt", 0},
    Outputs{"defVarChunking", 0},
    Outputs{"defVarDeflate", 0},
    Outputs{"defVarFill", 0},
    Outputs{"defVarFletcher32", 0},
    Outputs{"delAtt", 0},
    Outputs{"endDef", 0},
    Outputs{"getChunkCache", 3},
    Outputs{"inq", 4},
    Outputs{"inqAtt", 2},
    Outputs{"inqDim", 2},
    Outputs{"inqUserType", 5},
    Outputs{"inqVar", 4},
    Outputs{"inqVarChunking", 2},
    Outputs{"inqVarDeflate", 3},
    Outputs{"inqVarFill", 2},
    Outputs{"inqVlen", 3},
    Outputs{"pCreate", 2},
    Outputs{"pEndDef", 0},
    Outputs{"pOpen", 2},
    Outputs{"redef", 0},
    Outputs{"renameAtt", 0},
    Outputs{"renameDim", 0},
    Outputs{"renameVar", 0},
    Outputs{"setChunkCache", 0},
    Outputs{"sync", 0},
    Outputs{"insertEnum", 0},     Outputs{"inqEnum", 4},         Outputs{"inqEnumMember", 2},
    Outputs{"insertCompound", 0}, Outputs{"insertArrayCompound", 0},
    Outputs{"inqCompound", 3},    Outputs{"inqCompoundField", 4}, Outputs{"inqOpaque", 2},
    Outputs{"defVarFilter", 0},
    Outputs{"defVarSzip", 0},
    Outputs{"inqVarSzip", 2},
    Outputs{"defVarBzip2", 0},
    Outputs{"inqVarBzip2", 2},
    Outputs{"defVarZstandard", 0},
    Outputs{"inqVarZstandard", 2},
    Outputs{"defVarQuantize", 0},
    Outputs{"inqVarQuantize", 2},
    Outputs{"defVarEndian", 0},
};

// Operations whose first input is not an id.
constexpr std::array<std::string_view, 12> kNoIds = {
    "create",           "pCreate",       "open",       "pOpen",
    "getConstantNames", "parameter",     "inqLibVers", "setDefaultFormat",
    "setChunkCache",    "getChunkCache", "openMem",    "createMem"};

constexpr std::array kFirstInput = {0};
constexpr std::array kCopyAttIds = {0, 3};

}  // namespace

int outputCount(const OperationRow& row) {
  const std::string_view name = row.name;
  // Reads give the data, writes nothing, whatever the type or selection.
  if (name.starts_with("put")) return 0;
  const auto* it = std::ranges::find(kOutputCounts, name, &Outputs::name);
  return it != kOutputCounts.end() ? it->count : 1;
}

std::span<const int> idInputs(const OperationRow& row) {
  const std::string_view name = row.name;
  if (std::ranges::find(kNoIds, name) != kNoIds.end()) return {};
  if (name == "copyAtt") return kCopyAttIds;
  return kFirstInput;
}
