// Handlers of dimensions, groups, variables and user-defined types.
#pragma once

#include <netcdf.h>

#include <cstddef>

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
NETCDFLIB_HANDLER(handleDefEnum);
NETCDFLIB_HANDLER(handleInsertEnum);
NETCDFLIB_HANDLER(handleInqEnum);
NETCDFLIB_HANDLER(handleInqEnumMember);
NETCDFLIB_HANDLER(handleInqEnumIdent);
// "defCompound", "defOpaque": nc_def_compound or nc_def_opaque.
template <int (*define)(int, std::size_t, const char*, nc_type*)>
NETCDFLIB_HANDLER(handleDefSizedType);
NETCDFLIB_HANDLER(handleInsertCompound);
NETCDFLIB_HANDLER(handleInsertArrayCompound);
NETCDFLIB_HANDLER(handleInqCompound);
NETCDFLIB_HANDLER(handleInqCompoundField);
NETCDFLIB_HANDLER(handleInqCompoundFieldIndex);
NETCDFLIB_HANDLER(handleInqOpaque);

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
