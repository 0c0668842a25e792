// Files opened or created through the library and still open, so that unload can
// close them.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <vector>

#include "gateway/operation.hpp"

namespace OpenFileRegistry {
// The bytes of a file held in memory, malloc'd: netCDF-C frees and reallocates the images
// it is given to own, and hands back images it allocated.
struct FreeImage {
  void operator()(std::byte* p) const noexcept { std::free(p); }
};
using FileImage = std::unique_ptr<std::byte, FreeImage>;

void add(int ncid);
// A file held in memory; image is the memory it reads from when the library keeps it
// (netCDF-C neither frees nor copies such locked memory), so it must outlive the file.
void addInMemory(int ncid, FileImage image = nullptr);
// Forgets the id and releases its image, unless netCDF-C still has the file open.
void remove(int ncid);
// After a close that failed netCDF-C 4.9.0 keeps the file's id but has freed part of what
// it stands for: any later call with it, or with one of its groups, crashes. Forgets the
// file and refuses its ids from then on.
void release(int ncid);
// Raises NC_EBADID, as netCDF-C reports a closed id, when one of the row's id inputs
// belongs to a released file.
void refuseReleasedIds(const OperationRow& row, int nInputs, const qvArray* const* inputs);
bool contains(int ncid);
bool isInMemory(int ncid);
// The image the registry keeps for the id; null when none.
const std::byte* imageOf(int ncid);
// Ascending.
std::vector<int> ids();
// Warns once when anything is open, then closes every id in ascending order, aborting
// those that fail to close and ignoring further failures. Ids stay registered; the image
// of a file that neither closes nor aborts is left to netCDF-C, which may still read it.
void closeAll() noexcept;
}  // namespace OpenFileRegistry
