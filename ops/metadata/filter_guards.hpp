// Settings netCDF-C 4.9.0 accepts but that crash HDF5 later or leave a file that can no
// longer be closed; each check gives the status netCDF-C should have returned, 0 when the
// setting is safe.
#pragma once

#include <cstddef>
#include <span>

// A filter about to be defined on a variable of a netCDF-4 file.
int statusOfFilter(int ncid, int varid, unsigned id, std::span<const unsigned> params);
// New chunk sizes (netCDF order) of a variable that may already have szip.
int statusOfChunkingUnderSzip(int ncid, int varid, std::span<const std::size_t> chunks);
