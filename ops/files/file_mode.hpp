// The mode argument of create and open: a mode name, or a number passed through.
#pragma once

#include <string>

#include "qvhost/array.hpp"

int getFileMode(const qvArray* a);

// A mode name in any case, with or without the "nc_" prefix; raises unrecognizedFileMode
// with the text upper-cased when it names no mode.
int parseFileModeName(std::string text);
