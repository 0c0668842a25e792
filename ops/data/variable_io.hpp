// Moving a variable's data between netCDF-C and host arrays, once for every kind of data
// and shared by whole and subset operations. Numeric blocks go straight between netCDF-C
// and the host array's data: host order is the reversed netCDF order, so nothing is
// copied or transposed.
#pragma once

#include <netcdf.h>

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "convert/index.hpp"
#include "convert/read_outputs.hpp"
#include "convert/types.hpp"
#include "gateway/operation.hpp"

// Where in the variable: all of it, or a strided block (netCDF order).
struct Selection {
  IndexList start, count;
  StrideList stride;
  bool whole = true;
};

// Lengths of the dimensions dimids, each asked through the status check.
std::vector<std::size_t> dimensionLengths(int ncid, std::span<const int> dimids,
                                          const OperationRow& row);

// The number of elements of a selection or variable with these lengths: 0 when any is 0,
// empty when the product does not fit 64 bits (a wrapped product could match a data
// count and let netCDF-C read far past the data).
std::optional<std::size_t> elementProduct(std::span<const std::size_t> lengths) noexcept;

// Creates the result of dims in plhs[0] and reads into it. xtype is the variable's type
// (used by Vlen only).
void readVariableData(DataKind kind, int ncid, int varid, nc_type xtype, const Selection& where,
                      const DimList& dims, qvArrayPtr* plhs, const OperationRow& row);

// Writes data, whose element count the caller has matched to the selection.
void writeVariableData(DataKind kind, int ncid, int varid, const Selection& where,
                       const qvArray* data, const OperationRow& row);
