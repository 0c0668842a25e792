// Handlers of the file operations: open and create, file and define-mode control.
#pragma once

#include "gateway/operation.hpp"

// "create", "pCreate", "open", "pOpen".
NETCDFLIB_HANDLER(handleOpenCreate);
// "close", "abort", "endDef", "pEndDef", "redef", "sync".
NETCDFLIB_HANDLER(handleDefineControl);
// "setFill", "setDefaultFormat", "inqFormat", "inqLibVers", "inq".
NETCDFLIB_HANDLER(handleFileSettings);
// "getChunkCache", "setChunkCache".
NETCDFLIB_HANDLER(handleChunkCache);
// Files held in memory.
NETCDFLIB_HANDLER(handleOpenMem);
NETCDFLIB_HANDLER(handleCreateMem);
NETCDFLIB_HANDLER(handleCloseMem);
