// netCDF status codes to message-ID errors.
#pragma once

#include <string>

struct OperationRow;

// Returns when status is 0; otherwise raises librarydapFailure, formatConstraintsViolation
// or libraryFailure naming the row's operation.
void checkStatus(int status, const OperationRow& row);

// The symbolic name of a status ("NC_EBADID"), or its decimal text when it has none.
std::string errorName(int status);

// nc_strerror without its leading "NetCDF: ".
std::string netcdfMessage(int status);
