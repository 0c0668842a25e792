#include <array>

#include "gateway/constants.hpp"
#include "gateway/operation.hpp"
#include "ops/files/files.hpp"

namespace {

// Lookup order matters: the first row whose name matches is the one called. Rows arrive
// here as their operations are built, each at its place in the final order.
constexpr std::array kOperationTable = {
    OperationRow{0, "abort", 1, handleDefineControl},
    OperationRow{1, "close", 1, handleDefineControl},
    OperationRow{3, "pCreate", 4, handleOpenCreate},
    OperationRow{4, "create", 2, handleOpenCreate},
    OperationRow{14, "pEndDef", 5, handleDefineControl},
    OperationRow{15, "endDef", 1, handleDefineControl},
    OperationRow{136, "getConstantNames", 0, handleGetConstantNames},
    OperationRow{56, "inq", 1, handleFileSettings},
    OperationRow{65, "inqFormat", 1, handleFileSettings},
    OperationRow{70, "inqLibVers", 0, handleFileSettings},
    OperationRow{137, "parameter", 1, handleParameter},
    OperationRow{84, "pOpen", 3, handleOpenCreate},
    OperationRow{85, "open", 2, handleOpenCreate},
    OperationRow{126, "redef", 1, handleDefineControl},
    OperationRow{130, "setDefaultFormat", 1, handleFileSettings},
    OperationRow{131, "setFill", 2, handleFileSettings},
    OperationRow{133, "sync", 1, handleDefineControl},
    OperationRow{134, "setChunkCache", 3, handleChunkCache},
    OperationRow{135, "getChunkCache", 0, handleChunkCache},
};

}  // namespace

std::span<const OperationRow> operationTable() noexcept { return kOperationTable; }
