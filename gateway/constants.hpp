// netCDF's symbolic constants by name: "parameter" (one value) and "getConstantNames"
// (every name, in table order).
#pragma once

#include "gateway/operation.hpp"

NETCDFLIB_HANDLER(handleParameter);
// The name under which an error code is published ("NC_EBADID"), or null.
const char* publishedErrorName(int status) noexcept;
NETCDFLIB_HANDLER(handleGetConstantNames);
