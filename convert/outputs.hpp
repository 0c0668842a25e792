// Small output arrays the handlers return.
#pragma once

#include <cstddef>
#include <vector>

#include "qvhost/array.hpp"

// 1-by-1 double.
qvArrayPtr makeDoubleScalar(double v);
// 1-by-1 logical.
qvArrayPtr makeLogicalScalar(bool v);
// 1-by-n double row of ids in the given order; 0-by-0 when empty.
qvArrayPtr makeIdList(const std::vector<int>& ids);
