#include "call.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "errors.hpp"
#include "from_host.hpp"
#include "gateway/netcdflib.hpp"
#include "octave_blocks.hpp"
#include "to_host.hpp"

namespace octbridge {
namespace {

using OutputSlots = std::array<qvArrayPtr, kNetcdflibMaxOutputs>;

// The library takes the operation name as a char row; anything else is the caller's
// mistake, not an operation the library could name.
void checkOperationName(const octave_value_list& args) {
  if (args.length() == 0) {
    throw BridgeError("netcdflib:noOperation",
                      "an operation name is required; see 'help netcdflib'");
  }
  // Any empty char array is text too: the empty name, which the library reports as unknown.
  const dim_vector dv = args(0).dims();
  if (!args(0).is_string() || dv.ndims() != 2 || (dv(0) != 1 && dv.numel() != 0)) {
    throw BridgeError("netcdflib:badOperation",
                      "the first input must be an operation name (a char row)");
  }
}

int filledCount(const OutputSlots& slots) {
  const auto last =
      std::find_if(slots.rbegin(), slots.rend(), [](const qvArrayPtr& p) { return p != nullptr; });
  return static_cast<int>(slots.rend() - last);
}

octave_value_list outputsFromHost(const OutputSlots& slots, int nargout, const std::string& op) {
  const int made = filledCount(slots);
  if (nargout > made) {
    throw BridgeError("netcdflib:tooManyOutputs", "\"" + op + "\" returns " + std::to_string(made) +
                                                      " output(s) but " + std::to_string(nargout) +
                                                      " were requested");
  }
  const int n = std::min(std::max(nargout, 1), made);
  octave_value_list out(n);
  for (int k = 0; k < n; ++k) out(k) = fromHost(slots[static_cast<std::size_t>(k)].get());
  return out;
}

// Everything the host holds lives and dies in here, so that no host array outlives a
// failure.
void invoke(const octave_value_list& args, int nargout, octave_value_list& out,
            PendingError& failure) noexcept {
  try {
    checkOperationName(args);
    const std::vector<qvArrayPtr> inputs = argumentsToHost(args);
    std::vector<const qvArray*> prhs(inputs.size());
    std::ranges::transform(inputs, prhs.begin(), [](const auto& p) { return p.get(); });
    OutputSlots plhs;
    {
      OctaveStorage storage;
      const qvScopedStorageProvider lend(storage);
      netcdflib(std::min(nargout, kNetcdflibMaxOutputs), plhs.data(), static_cast<int>(prhs.size()),
                prhs.data());
    }
    if (auto warningError = takeDeferredWarningError()) std::rethrow_exception(warningError);
    out = outputsFromHost(plhs, nargout, args(0).string_value());
  } catch (...) {
    failure.capture(std::current_exception());
  }
  // A warning Octave turned into an error counts when nothing else failed.
  if (auto warningError = takeDeferredWarningError(); warningError && !failure) {
    failure.capture(warningError);
  }
}

}  // namespace

octave_value_list callNetcdflib(const octave_value_list& args, int nargout) {
  PendingError failure;
  octave_value_list out;
  invoke(args, nargout, out, failure);
  if (failure) failure.raise();
  return out;
}

}  // namespace octbridge
