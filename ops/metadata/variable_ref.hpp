// The variable named by an operation's first two inputs, "ncid" and "varid".
#pragma once

#include "convert/scalars.hpp"
#include "qvhost/array.hpp"

struct VariableRef {
  int ncid, varid;
};

inline VariableRef variableOf(const qvArray* const* inputs) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  return {ncid, getScalar<int>(inputs[1], "varid")};
}
