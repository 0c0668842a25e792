// The library's two exports.
#pragma once

#include "qvhost/array.hpp"

// Output slots a caller must provide: the most any operation fills.
inline constexpr int kNetcdflibMaxOutputs = 8;

extern "C" {
// prhs[0] is the operation name; prhs[1..nrhs-1] its inputs. Results are moved into
// plhs[0..]; failures are raised as message-ID errors.
__attribute__((visibility("default"))) void netcdflib(int nlhs, qvArrayPtr* plhs, int nrhs,
                                                      const qvArray* const* prhs);
// Unload hook: closes every file still open through "create", "open" or "pOpen".
__attribute__((visibility("default"))) void QNTerminate();
}
