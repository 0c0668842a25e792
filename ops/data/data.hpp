// Handlers of variable data (whole and subset reads and writes for every type) and of
// attributes (values and management).
#pragma once

#include "gateway/operation.hpp"

// "getVarDouble" ... "getVarVlen".
NETCDFLIB_HANDLER(handleReadWhole);
// "getVar1Double" ... "getVarsVlen".
NETCDFLIB_HANDLER(handleReadSubset);
// "putVarDouble" ... "putVarVlen".
NETCDFLIB_HANDLER(handleWriteWhole);
// "putVar1Double" ... "putVarsVlen".
NETCDFLIB_HANDLER(handleWriteSubset);

// "getVar", "getVar1", "getVara", "getVars", "putVar" ... "putVars", "getAtt", "putAtt":
// data in its own type.
NETCDFLIB_HANDLER(handleUntypedData);

// "getAttDouble" ... "getAttVlen".
NETCDFLIB_HANDLER(handleGetAttribute);
// "putAttDouble" ... "putAttVlen".
NETCDFLIB_HANDLER(handlePutAttribute);
NETCDFLIB_HANDLER(handleInqAtt);
NETCDFLIB_HANDLER(handleInqAttID);
NETCDFLIB_HANDLER(handleInqAttName);
NETCDFLIB_HANDLER(handleCopyAtt);
NETCDFLIB_HANDLER(handleDelAtt);
NETCDFLIB_HANDLER(handleRenameAtt);
