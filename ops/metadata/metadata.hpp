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

// "defVarChunking", "inqVarChunking", "defVarDeflate", "inqVarDeflate",
// "defVarFletcher32", "inqVarFletcher32".
NETCDFLIB_HANDLER(handleStorage);
// "defVarFill", "inqVarFill".
NETCDFLIB_HANDLER(handleFillValues);
// "defVarFilter", "inqVarFilterIds", "inqVarFilterInfo", "inqFilterAvail", and szip,
// bzip2 and Zstandard settings.
NETCDFLIB_HANDLER(handleFilters);
// "defVarQuantize", "inqVarQuantize", "defVarEndian", "inqVarEndian".
NETCDFLIB_HANDLER(handleValueEncoding);
