// Handlers of dimensions, groups, variables and user-defined types.
#pragma once

#include "gateway/operation.hpp"

// "defDim", "inqDim", "inqDimID", "inqDimIDs", "inqUnlimDims", "renameDim".
NETCDFLIB_HANDLER(handleDimensions);
// "defGrp", "inqNcid", "inqGrps", "inqGrpName", "inqGrpNameFull", "inqGrpParent".
NETCDFLIB_HANDLER(handleGroups);
// "defVar", "inqVar", "inqVarID", "inqVarIDs", "renameVar".
NETCDFLIB_HANDLER(handleVariables);
// "defVlen", "inqUserType", "inqVlen".
NETCDFLIB_HANDLER(handleUserTypes);
// "defEnum" ... "inqOpaque": enum, compound and opaque types.
NETCDFLIB_HANDLER(handleUserTypeDefinitions);

// "defVarChunking", "inqVarChunking", "defVarDeflate", "inqVarDeflate",
// "defVarFletcher32", "inqVarFletcher32".
NETCDFLIB_HANDLER(handleStorage);
// "defVarFill", "inqVarFill".
NETCDFLIB_HANDLER(handleFillValues);
