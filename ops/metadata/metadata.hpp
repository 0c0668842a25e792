// Handlers of dimensions, groups, variables and user-defined types.
#pragma once

#include "gateway/operation.hpp"

#define NETCDFLIB_HANDLER(name)                                                    \
  void name(int nlhs, qvArrayPtr* plhs, int nInputs, const qvArray* const* inputs, \
            const OperationRow& row)

// "defDim", "inqDim", "inqDimID", "inqDimIDs", "inqUnlimDims", "renameDim".
NETCDFLIB_HANDLER(handleDimensions);
// "defGrp", "inqNcid", "inqGrps", "inqGrpName", "inqGrpNameFull", "inqGrpParent".
NETCDFLIB_HANDLER(handleGroups);
// "defVar", "inqVar", "inqVarID", "inqVarIDs", "renameVar".
NETCDFLIB_HANDLER(handleVariables);
// "defVlen", "inqUserType", "inqVlen".
NETCDFLIB_HANDLER(handleUserTypes);

// "defVarChunking", "inqVarChunking", "defVarDeflate", "inqVarDeflate",
// "defVarFletcher32", "inqVarFletcher32".
NETCDFLIB_HANDLER(handleStorage);
// "defVarFill", "inqVarFill".
NETCDFLIB_HANDLER(handleFillValues);

#undef NETCDFLIB_HANDLER
