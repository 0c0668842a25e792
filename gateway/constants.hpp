// netCDF's symbolic constants by name: "parameter" (one value) and "getConstantNames"
// (every name, in table order).
#pragma once

#include "gateway/operation.hpp"

void handleParameter(int nlhs, qvArrayPtr* plhs, int nInputs, const qvArray* const* inputs,
                     const OperationRow& row);
void handleGetConstantNames(int nlhs, qvArrayPtr* plhs, int nInputs, const qvArray* const* inputs,
                            const OperationRow& row);
