// Calls the harness does not make because they would legitimately ask for more memory or
// disk than a fuzzing process should spend: variables of millions of elements, huge size
// hints, writes far beyond the end of an unlimited dimension. Values that the library must
// refuse (negative, non-finite, out of range) always pass, so their errors stay tested.
#pragma once

#include <span>

#include "gateway/operation.hpp"

namespace fuzz {

bool affordable(const OperationRow& row, std::span<const qvArray* const> inputs);

}  // namespace fuzz
