#include "ops/metadata/hdf5_names.hpp"

#include <netcdf.h>

#include <vector>

#include "gateway/status.hpp"

namespace {

bool isNetcdf4(int ncid) {
  int format = 0;
  return nc_inq_format(ncid, &format) == NC_NOERR && isNetcdf4Format(format);
}

// Of this group only: nc_inq_dimid would also find the parents' dimensions.
bool hasDimension(int ncid, const std::string& name) {
  int n = 0;
  if (nc_inq_dimids(ncid, &n, nullptr, 0) != NC_NOERR) return false;
  std::vector<int> ids(static_cast<std::size_t>(n), 0);
  if (nc_inq_dimids(ncid, &n, ids.data(), 0) != NC_NOERR) return false;
  for (const int id : ids) {
    char own[NC_MAX_NAME + 1] = {};
    if (nc_inq_dimname(ncid, id, own) == NC_NOERR && name == own) return true;
  }
  return false;
}

bool hasVariableGroupOrType(int ncid, const std::string& name) {
  int id = -1;
  if (nc_inq_varid(ncid, name.c_str(), &id) == NC_NOERR) return true;
  if (nc_inq_ncid(ncid, name.c_str(), &id) == NC_NOERR) return true;
  int n = 0;
  if (nc_inq_typeids(ncid, &n, nullptr) != NC_NOERR) return false;
  std::vector<nc_type> types(static_cast<std::size_t>(n), NC_NAT);
  if (nc_inq_typeids(ncid, &n, types.data()) != NC_NOERR) return false;
  for (const nc_type type : types) {
    char own[NC_MAX_NAME + 1] = {};
    if (nc_inq_type(ncid, type, own, nullptr) == NC_NOERR && name == own) return true;
  }
  return false;
}

}  // namespace

void refuseHdf5NameClash(int ncid, const std::string& name, NewObject what,
                         const OperationRow& row) {
  if (!isNetcdf4(ncid)) return;
  const bool clash =
      what == NewObject::Dimension ? hasVariableGroupOrType(ncid, name) : hasDimension(ncid, name);
  if (clash) checkStatus(NC_ENAMEINUSE, row);
}
