// Data in its variable's or attribute's own type, for the data rows without a kind.
#pragma once

#include <netcdf.h>

#include <optional>
#include <string>

#include "convert/types.hpp"
#include "convert/user_data.hpp"
#include "gateway/operation.hpp"

// The typed kind that moves data of type t (atomic types and vlens of them), so that such
// data keeps the typed rows' rules; empty for enum, opaque, compound and vlens of them.
std::optional<DataKind> typedKindOf(const TypeNode& t);

// NC_STRING data given as a cell of char arrays, as a string array; null otherwise.
qvArrayPtr stringsIfCells(const TypeNode& t, const qvArray* data);

// The whole and subset reads and writes of variables (inputs as the row's form has them).
void readOwnTypeVariable(int ncid, int varid, const qvArray* const* inputs, qvArrayPtr* plhs,
                         const OperationRow& row);
void writeOwnTypeVariable(int ncid, int varid, int nInputs, const qvArray* const* inputs,
                          const OperationRow& row);

// Attribute values of user-defined types other than vlens of atomic types.
void readUserAttribute(int ncid, int varid, const std::string& name, const TypeNode& t,
                       std::size_t len, qvArrayPtr& slot, const OperationRow& row);
void writeUserAttribute(int ncid, int varid, const std::string& name, nc_type xtype,
                        const TypeNode& t, const qvArray* data, const OperationRow& row);
