// One call of the library from Octave: arguments in, outputs out, failures raised as
// Octave errors after everything the host holds for the call is released.
#pragma once

#include <octave/oct.h>

namespace octbridge {

octave_value_list callNetcdflib(const octave_value_list& args, int nargout);

}  // namespace octbridge
