// Handlers of the file operations: open and create, file and define-mode control.
#pragma once

#include "gateway/operation.hpp"

NETCDFLIB_HANDLER(handleCreate);
NETCDFLIB_HANDLER(handlePCreate);
NETCDFLIB_HANDLER(handleOpen);
NETCDFLIB_HANDLER(handlePOpen);
NETCDFLIB_HANDLER(handleClose);
NETCDFLIB_HANDLER(handleAbort);
NETCDFLIB_HANDLER(handlePEndDef);
// "endDef", "redef", "sync": call on the ncid alone.
template <int (*call)(int)>
NETCDFLIB_HANDLER(handleFileCall);
NETCDFLIB_HANDLER(handleSetFill);
NETCDFLIB_HANDLER(handleSetDefaultFormat);
NETCDFLIB_HANDLER(handleInqFormat);
NETCDFLIB_HANDLER(handleInqLibVers);
NETCDFLIB_HANDLER(handleInq);
NETCDFLIB_HANDLER(handleGetChunkCache);
NETCDFLIB_HANDLER(handleSetChunkCache);
// Files held in memory.
NETCDFLIB_HANDLER(handleOpenMem);
NETCDFLIB_HANDLER(handleCreateMem);
NETCDFLIB_HANDLER(handleCloseMem);
