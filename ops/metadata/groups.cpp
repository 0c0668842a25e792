#include <netcdf.h>

#include <vector>

#include "convert/outputs.hpp"
#include "convert/scalars.hpp"
#include "convert/text.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/metadata/hdf5_names.hpp"
#include "ops/metadata/id_list.hpp"
#include "ops/metadata/metadata.hpp"

NETCDFLIB_HANDLER(handleDefGrp) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const std::string name = getName(inputs[1], "group name");
  refuseHdf5NameClash(ncid, name, NewObject::GroupOrType, row);
  int group = -1;
  checkStatus(nc_def_grp(ncid, name.c_str(), &group), row);
  plhs[0] = makeDoubleScalar(group);
}

NETCDFLIB_HANDLER(handleInqNcid) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const std::string name = getName(inputs[1], "group name");
  int group = -1;
  checkStatus(nc_inq_ncid(ncid, name.c_str(), &group), row);
  plhs[0] = makeDoubleScalar(group);
}

NETCDFLIB_HANDLER(handleInqGrps) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  plhs[0] = listIds([&](int* n, int* ids) { return nc_inq_grps(ncid, n, ids); }, row);
}

NETCDFLIB_HANDLER(handleInqGrpName) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  char name[NC_MAX_NAME + 1] = {};
  checkStatus(nc_inq_grpname(ncid, name), row);
  plhs[0] = makeNameResult(name);
}

NETCDFLIB_HANDLER(handleInqGrpNameFull) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  std::size_t length = 0;
  checkStatus(nc_inq_grpname_len(ncid, &length), row);
  std::vector<char> path(length + 1, '\0');
  checkStatus(nc_inq_grpname_full(ncid, nullptr, path.data()), row);
  plhs[0] = makeNameResult(path.data());
}

NETCDFLIB_HANDLER(handleInqGrpParent) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  int parent = -1;
  checkStatus(nc_inq_grp_parent(ncid, &parent), row);
  plhs[0] = makeDoubleScalar(parent);
}
