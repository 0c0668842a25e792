// In a netCDF-4 file the dimensions, variables, subgroups and types of a group are all
// HDF5 objects of one name space. netCDF-C 4.9.0 keeps variables, groups and types apart
// but lets a dimension share a name with one of them (other than its own coordinate
// variable); HDF5 then cannot write the file, close and abort both fail, and the file
// stays open for good. Such names get the status netCDF-C gives the other clashes.
#pragma once

#include <netcdf.h>

#include <string>

#include "gateway/operation.hpp"

// Whether a format (nc_inq_format) keeps its data in HDF5.
constexpr bool isNetcdf4Format(int format) noexcept {
  return format == NC_FORMAT_NETCDF4 || format == NC_FORMAT_NETCDF4_CLASSIC;
}

enum class NewObject { Dimension, GroupOrType };

// Raises NC_ENAMEINUSE (through the status check) when ncid is a netCDF-4 group in which
// a new or renamed object of this kind named name would clash in HDF5.
void refuseHdf5NameClash(int ncid, const std::string& name, NewObject what,
                         const OperationRow& row);
