#include <netcdf.h>

#include <string>

#include "convert/outputs.hpp"
#include "convert/scalars.hpp"
#include "convert/text.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/metadata/hdf5_names.hpp"
#include "ops/metadata/id_list.hpp"
#include "ops/metadata/metadata.hpp"

NETCDFLIB_HANDLER(handleDefDim) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const std::string name = getName(inputs[1], "dimension");
  // 0 makes the dimension unlimited.
  const auto length = getScalar<std::size_t>(inputs[2], "dim_length");
  refuseHdf5NameClash(ncid, name, NewObject::Dimension, row);
  int dimid = -1;
  checkStatus(nc_def_dim(ncid, name.c_str(), length, &dimid), row);
  plhs[0] = makeDoubleScalar(dimid);
}

NETCDFLIB_HANDLER(handleInqDim) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int dimid = getScalar<int>(inputs[1], "dimid");
  char name[NC_MAX_NAME + 1] = {};
  std::size_t length = 0;
  checkStatus(nc_inq_dim(ncid, dimid, name, &length), row);
  plhs[0] = makeNameResult(name);
  plhs[1] = makeDoubleScalar(static_cast<double>(length));
}

NETCDFLIB_HANDLER(handleInqDimID) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const std::string name = getName(inputs[1], "dimension");
  int dimid = -1;
  checkStatus(nc_inq_dimid(ncid, name.c_str(), &dimid), row);
  plhs[0] = makeDoubleScalar(dimid);
}

NETCDFLIB_HANDLER(handleInqDimIDs) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int includeParents = getLogicalFlag(inputs[1], "include_parents flag") ? 1 : 0;
  plhs[0] = listIds(
      [&](int* n, int* ids) { return nc_inq_dimids(ncid, n, ids, includeParents); }, row);
}

NETCDFLIB_HANDLER(handleInqUnlimDims) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  plhs[0] = listIds([&](int* n, int* ids) { return nc_inq_unlimdims(ncid, n, ids); }, row);
}

NETCDFLIB_HANDLER(handleRenameDim) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int dimid = getScalar<int>(inputs[1], "dimid");
  const std::string name = getName(inputs[2], "dimension");
  refuseHdf5NameClash(ncid, name, NewObject::Dimension, row);
  checkStatus(nc_rename_dim(ncid, dimid, name.c_str()), row);
}
