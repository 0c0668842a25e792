// Variable-length types can be defined; every user type can be inquired.
#include <netcdf.h>

#include "convert/outputs.hpp"
#include "convert/scalars.hpp"
#include "convert/text.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/metadata/hdf5_names.hpp"
#include "ops/metadata/metadata.hpp"

NETCDFLIB_HANDLER(handleDefVlen) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const std::string name = getName(inputs[1], "typeName");
  const int base = getScalar<int>(inputs[2], "baseType");
  refuseHdf5NameClash(ncid, name, NewObject::GroupOrType, row);
  nc_type type = NC_NAT;
  checkStatus(nc_def_vlen(ncid, name.c_str(), base, &type), row);
  plhs[0] = makeDoubleScalar(type);
}

NETCDFLIB_HANDLER(handleInqUserType) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int type = getScalar<int>(inputs[1], "typeID");
  char name[NC_MAX_NAME + 1] = {};
  std::size_t size = 0, nfields = 0;
  nc_type base = NC_NAT;
  int typeClass = 0;
  checkStatus(nc_inq_user_type(ncid, type, name, &size, &base, &nfields, &typeClass), row);
  plhs[0] = makeNameResult(name);
  plhs[1] = makeDoubleScalar(static_cast<double>(size));
  plhs[2] = makeDoubleScalar(base);
  plhs[3] = makeDoubleScalar(static_cast<double>(nfields));
  plhs[4] = makeDoubleScalar(typeClass);
}

NETCDFLIB_HANDLER(handleInqVlen) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int type = getScalar<int>(inputs[1], "typeID");
  char name[NC_MAX_NAME + 1] = {};
  std::size_t datumSize = 0;
  nc_type base = NC_NAT;
  checkStatus(nc_inq_vlen(ncid, type, name, &datumSize, &base), row);
  plhs[0] = makeNameResult(name);
  plhs[1] = makeDoubleScalar(static_cast<double>(datumSize));
  plhs[2] = makeDoubleScalar(base);
}
