// Host arrays to Octave values. Arrays whose data is already an Octave array come back as
// that array; char is converted (UTF-16 code units to bytes); cells and string arrays
// become cells.
#pragma once

#include <octave/oct.h>

#include "qvhost/array.hpp"

namespace octbridge {

// A null array (an empty cell element) gives []. Classes without an Octave counterpart
// (struct, function handle, object) raise std::invalid_argument.
octave_value fromHost(const qvArray* a);

}  // namespace octbridge
