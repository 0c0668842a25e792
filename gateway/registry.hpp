// Files opened or created through the library and still open, so that unload can
// close them.
#pragma once

#include <vector>

namespace OpenFileRegistry {
void add(int ncid);
void remove(int ncid);
bool contains(int ncid);
// Ascending.
std::vector<int> ids();
// Warns once when anything is open, then closes every id in ascending order, aborting
// those that fail to close and ignoring further failures. Ids stay registered.
void closeAll() noexcept;
}  // namespace OpenFileRegistry
