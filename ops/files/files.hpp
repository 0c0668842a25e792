// Handlers of the file operations: open and create, file and define-mode control.
#pragma once

#include "gateway/operation.hpp"

// "create", "pCreate", "open", "pOpen".
NETCDFLIB_HANDLER(handleOpenCreate);
NETCDFLIB_HANDLER(handleClose);
NETCDFLIB_HANDLER(handleAbort);
NETCDFLIB_HANDLER(handlePEndDef);
// "endDef", "redef", "sync": call on the ncid alone.
template <int (*call)(int)>
NETCDFLIB_HANDLER(handleFileCall);
// "setFill", "setDefaultFormat", "inqFormat", "inqLibVers", "inq".
NETCDFLIB_HANDLER(handleFileSettings);
// "getChunkCache", "setChunkCache".
NETCDFLIB_HANDLER(handleChunkCache);
