// Handlers of the file operations: open and create, file and define-mode control.
#pragma once

#include "gateway/operation.hpp"

// "create", "pCreate", "open", "pOpen".
void handleOpenCreate(int nlhs, qvArrayPtr* plhs, int nInputs, const qvArray* const* inputs,
                      const OperationRow& row);
// "close", "abort", "endDef", "pEndDef", "redef", "sync".
void handleDefineControl(int nlhs, qvArrayPtr* plhs, int nInputs, const qvArray* const* inputs,
                         const OperationRow& row);
// "setFill", "setDefaultFormat", "inqFormat", "inqLibVers", "inq".
void handleFileSettings(int nlhs, qvArrayPtr* plhs, int nInputs, const qvArray* const* inputs,
                        const OperationRow& row);
// "getChunkCache", "setChunkCache".
void handleChunkCache(int nlhs, qvArrayPtr* plhs, int nInputs, const qvArray* const* inputs,
                      const OperationRow& row);
