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

NETCDFLIB_HANDLER(handleDefVarChunking);
NETCDFLIB_HANDLER(handleInqVarChunking);
NETCDFLIB_HANDLER(handleDefVarDeflate);
NETCDFLIB_HANDLER(handleInqVarDeflate);
NETCDFLIB_HANDLER(handleDefVarFletcher32);
NETCDFLIB_HANDLER(handleInqVarFletcher32);
NETCDFLIB_HANDLER(handleDefVarFill);
NETCDFLIB_HANDLER(handleInqVarFill);
