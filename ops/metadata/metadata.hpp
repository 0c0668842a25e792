// Handlers of dimensions, groups, variables and user-defined types.
#pragma once

#include "gateway/operation.hpp"

NETCDFLIB_HANDLER(handleDefDim);
NETCDFLIB_HANDLER(handleInqDim);
NETCDFLIB_HANDLER(handleInqDimID);
NETCDFLIB_HANDLER(handleInqDimIDs);
NETCDFLIB_HANDLER(handleInqUnlimDims);
NETCDFLIB_HANDLER(handleRenameDim);
NETCDFLIB_HANDLER(handleDefGrp);
NETCDFLIB_HANDLER(handleInqNcid);
NETCDFLIB_HANDLER(handleInqGrps);
NETCDFLIB_HANDLER(handleInqGrpName);
NETCDFLIB_HANDLER(handleInqGrpNameFull);
NETCDFLIB_HANDLER(handleInqGrpParent);
NETCDFLIB_HANDLER(handleDefVar);
NETCDFLIB_HANDLER(handleInqVar);
NETCDFLIB_HANDLER(handleInqVarID);
NETCDFLIB_HANDLER(handleInqVarIDs);
NETCDFLIB_HANDLER(handleRenameVar);
NETCDFLIB_HANDLER(handleDefVlen);
NETCDFLIB_HANDLER(handleInqUserType);
NETCDFLIB_HANDLER(handleInqVlen);

NETCDFLIB_HANDLER(handleDefVarChunking);
NETCDFLIB_HANDLER(handleInqVarChunking);
NETCDFLIB_HANDLER(handleDefVarDeflate);
NETCDFLIB_HANDLER(handleInqVarDeflate);
NETCDFLIB_HANDLER(handleDefVarFletcher32);
NETCDFLIB_HANDLER(handleInqVarFletcher32);
NETCDFLIB_HANDLER(handleDefVarFill);
NETCDFLIB_HANDLER(handleInqVarFill);
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
