// Handlers of variable data (whole and subset reads and writes for every type) and of
// attributes (values and management). The typed ones read their kind and form from
// row.meaning.
#pragma once

#include "gateway/operation.hpp"

NETCDFLIB_HANDLER(handleReadWhole);
NETCDFLIB_HANDLER(handleReadSubset);
NETCDFLIB_HANDLER(handleWriteWhole);
NETCDFLIB_HANDLER(handleWriteSubset);

NETCDFLIB_HANDLER(handleGetAttribute);
NETCDFLIB_HANDLER(handlePutAttribute);
NETCDFLIB_HANDLER(handleInqAtt);
NETCDFLIB_HANDLER(handleInqAttID);
NETCDFLIB_HANDLER(handleInqAttName);
NETCDFLIB_HANDLER(handleCopyAtt);
NETCDFLIB_HANDLER(handleDelAtt);
NETCDFLIB_HANDLER(handleRenameAtt);
