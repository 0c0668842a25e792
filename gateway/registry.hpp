// Files opened or created through the library and still open, so that unload can
// close them.
#pragma once

#include <vector>

#include "gateway/operation.hpp"

namespace OpenFileRegistry {
void add(int ncid);
void remove(int ncid);
// After a close that failed netCDF-C 4.9.0 keeps the file's id but has freed part of what
// it stands for: any later call with it, or with one of its groups, crashes. Forgets the
// file and refuses its ids from then on.
void release(int ncid);
// Raises NC_EBADID, as netCDF-C reports a closed id, when one of the row's id inputs
// belongs to a released file.
void refuseReleasedIds(const OperationRow& row, int nInputs, const qvArray* const* inputs);
bool contains(int ncid);
// Ascending.
std::vector<int> ids();
// Warns once when anything is open, then closes every id in ascending order, aborting
// those that fail to close and ignoring further failures. Ids stay registered.
void closeAll() noexcept;
}  // namespace OpenFileRegistry
