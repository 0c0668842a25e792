// The START, COUNT and STRIDE of subset reads and writes, and their checks against the
// variable.
#pragma once

#include <string>

#include "ops/data/variable_io.hpp"

// Converts START, then COUNT and STRIDE as the form has them (ones of START's length when
// not).
Selection getSubset(const qvArray* const* inputs, Form form);

// Which length badIndexArgumentLength reports: reads always report START's, writes the
// length of the vector at fault.
enum class LengthReport { StartLength, OwnLength };

struct VariableRank {
  int ndims;
  nc_type xtype;
};

// Asks netCDF-C for the variable's name, type and rank and checks the three lengths in
// order START, COUNT, STRIDE.
VariableRank checkSubsetLengths(int ncid, int varid, const Selection& where, LengthReport report,
                                const OperationRow& row);
