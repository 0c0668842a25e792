// What the entry point does after the start-up step, over a given table: read the
// operation name, look it up, call the handler, and report range failures of numeric
// arguments as argumentOutOfBounds.
#pragma once

#include <span>

#include "gateway/operation.hpp"

void dispatchOperation(std::span<const OperationRow> table, int nlhs, qvArrayPtr* plhs, int nrhs,
                       const qvArray* const* prhs);
