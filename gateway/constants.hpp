// netCDF's symbolic constants by name: "parameter" (one value) and "getConstantNames"
// (every name, in table order).
#pragma once

#include "gateway/operation.hpp"

NETCDFLIB_HANDLER(handleParameter);
NETCDFLIB_HANDLER(handleGetConstantNames);
