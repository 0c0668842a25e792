#include <array>

#include "gateway/constants.hpp"
#include "gateway/operation.hpp"

namespace {

// Lookup order matters: the first row whose name matches is the one called. Rows arrive
// here as their operations are built, each at its place in the final order.
constexpr std::array kOperationTable = {
    OperationRow{136, "getConstantNames", 0, handleGetConstantNames},
    OperationRow{137, "parameter", 1, handleParameter},
};

}  // namespace

std::span<const OperationRow> operationTable() noexcept { return kOperationTable; }
