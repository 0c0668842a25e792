// The hand-written programs of the seed corpus, by file name.
#pragma once

#include <map>
#include <string>

#include "fuzz_program.hpp"

namespace seeds {

const std::map<std::string, fuzz::Program>& programs();

}  // namespace seeds
