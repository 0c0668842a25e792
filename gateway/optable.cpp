#include <array>

#include "gateway/constants.hpp"
#include "gateway/operation.hpp"
#include "ops/files/files.hpp"
#include "ops/metadata/metadata.hpp"

namespace {

// Lookup order matters: the first row whose name matches is the one called. Rows arrive
// here as their operations are built, each at its place in the final order.
constexpr std::array kOperationTable = {
    OperationRow{0, "abort", 1, handleDefineControl},
    OperationRow{1, "close", 1, handleDefineControl},
    OperationRow{3, "pCreate", 4, handleOpenCreate},
    OperationRow{4, "create", 2, handleOpenCreate},
    OperationRow{5, "defDim", 3, handleDimensions},
    OperationRow{6, "defGrp", 2, handleGroups},
    OperationRow{7, "defVar", 4, handleVariables},
    OperationRow{12, "defVlen", 3, handleUserTypes},
    OperationRow{14, "pEndDef", 5, handleDefineControl},
    OperationRow{15, "endDef", 1, handleDefineControl},
    OperationRow{136, "getConstantNames", 0, handleGetConstantNames},
    OperationRow{56, "inq", 1, handleFileSettings},
    OperationRow{60, "inqDim", 2, handleDimensions},
    OperationRow{61, "inqDimID", 2, handleDimensions},
    OperationRow{62, "inqDimIDs", 2, handleDimensions},
    OperationRow{65, "inqFormat", 1, handleFileSettings},
    OperationRow{66, "inqGrpName", 1, handleGroups},
    OperationRow{67, "inqGrpNameFull", 1, handleGroups},
    OperationRow{68, "inqGrps", 1, handleGroups},
    OperationRow{69, "inqGrpParent", 1, handleGroups},
    OperationRow{70, "inqLibVers", 0, handleFileSettings},
    OperationRow{71, "inqNcid", 2, handleGroups},
    OperationRow{75, "inqVarID", 2, handleVariables},
    OperationRow{77, "inqVar", 2, handleVariables},
    // Never reached: the two-input row above matches the name first.
    OperationRow{62, "inqDimIDs", 1, handleDimensions},
    OperationRow{72, "inqUnlimDims", 1, handleDimensions},
    OperationRow{73, "inqUserType", 2, handleUserTypes},
    OperationRow{74, "inqVlen", 2, handleUserTypes},
    OperationRow{76, "inqVarIDs", 1, handleVariables},
    OperationRow{137, "parameter", 1, handleParameter},
    OperationRow{84, "pOpen", 3, handleOpenCreate},
    OperationRow{85, "open", 2, handleOpenCreate},
    OperationRow{126, "redef", 1, handleDefineControl},
    OperationRow{128, "renameDim", 3, handleDimensions},
    OperationRow{129, "renameVar", 3, handleVariables},
    OperationRow{130, "setDefaultFormat", 1, handleFileSettings},
    OperationRow{131, "setFill", 2, handleFileSettings},
    OperationRow{133, "sync", 1, handleDefineControl},
    OperationRow{134, "setChunkCache", 3, handleChunkCache},
    OperationRow{135, "getChunkCache", 0, handleChunkCache},
};

}  // namespace

std::span<const OperationRow> operationTable() noexcept { return kOperationTable; }
