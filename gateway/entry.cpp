#include <boost/numeric/conversion/converter_policies.hpp>
#include <memory>

#include "gateway/dispatch.hpp"
#include "gateway/errors.hpp"
#include "gateway/netcdflib.hpp"
#include "gateway/registry.hpp"
#include "gateway/row_shapes.hpp"
#include "gateway/startup.hpp"

namespace {

struct HostTextDeleter {
  void operator()(char* text) const noexcept { qvFree(text); }
};
// The operation name as the host converted it; null when there was none.
using HostText = std::unique_ptr<char, HostTextDeleter>;

}  // namespace

void dispatchOperation(std::span<const OperationRow> table, int nlhs, qvArrayPtr* plhs, int nrhs,
                       const qvArray* const* prhs) {
  // qvArrayToString gives null for a first input that is not char; with no inputs at
  // all there is no name either. The lookup reports both as an unrecognised operation
  // with an empty name rather than trusting the host.
  const HostText name(nrhs >= 1 ? qvArrayToString(prhs[0]) : nullptr);
  const int nInputs = nrhs - 1;
  const OperationRow& row = lookupOperation(table, name.get(), nInputs);
  // Before anything is done, so that a call refused for its outputs changes nothing.
  if (const int made = outputCount(row); nlhs > made) {
    qvErrMsgId(QUARNA::imagesci::validate::tooManyOutputs(row.name, made));
  }
  OpenFileRegistry::refuseReleasedIds(row, nInputs, prhs + 1);
  try {
    row.handler(nlhs, plhs, nInputs, prhs + 1, row);
  } catch (const boost::numeric::bad_numeric_cast&) {
    // Range failures of numeric arguments surface as one argument error, whatever the
    // argument; the Boost exception's own text is not for the user.
    qvErrMsgId(QUARNA::imagesci::validate::argumentOutOfBounds());
  }
}

void netcdflib(int nlhs, qvArrayPtr* plhs, int nrhs, const qvArray* const* prhs) {
  // First, so that a failed start-up leaves nothing of the call done.
  processServiceHolder().ensureStarted();
  dispatchOperation(operationTable(), nlhs, plhs, nrhs, prhs);
}
