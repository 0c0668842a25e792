// Octave values to host arrays. Numeric and logical data is lent, not copied; char is
// converted (bytes to UTF-16 code units); cells are mapped element by element; anything
// else becomes a host array the library refuses with its own argument errors.
#pragma once

#include <octave/oct.h>

#include <vector>

#include "qvhost/array.hpp"

namespace octbridge {

qvArrayPtr toHost(const octave_value& v);

// A char row (or an empty char array) as one host string; a cell whose elements are all
// such rows as a string array of its shape. Anything else maps as toHost does.
qvArrayPtr toHostStrings(const octave_value& v);

// The arguments of one call, args(0) being the operation name. The data argument of the
// text writes is taken byte by byte, that of the string writes as string data, and inside
// the cells of Vlen data a cell of char rows becomes a string array.
std::vector<qvArrayPtr> argumentsToHost(const octave_value_list& args);

}  // namespace octbridge
