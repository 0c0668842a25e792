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
// Compression filters: one handler per operation.
NETCDFLIB_HANDLER(handleDefVarFilter);
NETCDFLIB_HANDLER(handleInqVarFilterIds);
NETCDFLIB_HANDLER(handleInqVarFilterInfo);
NETCDFLIB_HANDLER(handleInqFilterAvail);
NETCDFLIB_HANDLER(handleDefVarSzip);
NETCDFLIB_HANDLER(handleInqVarSzip);
NETCDFLIB_HANDLER(handleDefVarBzip2);
NETCDFLIB_HANDLER(handleInqVarBzip2);
NETCDFLIB_HANDLER(handleDefVarZstandard);
NETCDFLIB_HANDLER(handleInqVarZstandard);
// Quantization and byte order.
NETCDFLIB_HANDLER(handleDefVarQuantize);
NETCDFLIB_HANDLER(handleInqVarQuantize);
NETCDFLIB_HANDLER(handleDefVarEndian);
NETCDFLIB_HANDLER(handleInqVarEndian);
