// What each row of the operation table gives back and which of its inputs are file or group
// ids, for the checks made before a handler runs.
#pragma once

#include <span>

#include "gateway/operation.hpp"

// The number of outputs the row's operation makes.
int outputCount(const OperationRow& row);

// Positions (among the inputs after the name) of the row's file and group ids.
std::span<const int> idInputs(const OperationRow& row);
