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
