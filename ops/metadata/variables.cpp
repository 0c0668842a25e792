#include <netcdf.h>

#include <algorithm>
#include <vector>

#include "convert/index.hpp"
#include "convert/outputs.hpp"
#include "convert/scalars.hpp"
#include "convert/text.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/metadata/id_list.hpp"
#include "ops/metadata/metadata.hpp"

NETCDFLIB_HANDLER(handleDefVar) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const std::string name = getName(inputs[1], "variable");
  const int xtype = getScalar<int>(inputs[2], "xtype");
  // Host order in, netCDF order out; empty makes a scalar variable.
  const std::vector<int> dimids = getDimensionIdRow(inputs[3], "dimids");
  int varid = -1;
  checkStatus(nc_def_var(ncid, name.c_str(), xtype, static_cast<int>(dimids.size()),
                         dimids.empty() ? nullptr : dimids.data(), &varid),
              row);
  plhs[0] = makeDoubleScalar(varid);
}

NETCDFLIB_HANDLER(handleInqVar) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  if (varid == NC_GLOBAL) qvErrMsgId(QUARNA::imagesci::netcdf::inqVarNcGlobal());
  char name[NC_MAX_NAME + 1] = {};
  nc_type xtype = NC_NAT;
  int ndims = 0, natts = 0;
  int dimids[NC_MAX_VAR_DIMS] = {};
  checkStatus(nc_inq_var(ncid, varid, name, &xtype, &ndims, dimids, &natts), row);
  // Back in host order, as defVar was given them.
  std::vector<int> hostOrder(dimids, dimids + ndims);
  std::reverse(hostOrder.begin(), hostOrder.end());
  plhs[0] = makeNameResult(name);
  plhs[1] = makeDoubleScalar(xtype);
  plhs[2] = makeIdList(hostOrder);
  plhs[3] = makeDoubleScalar(natts);
}

NETCDFLIB_HANDLER(handleInqVarID) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const std::string name = getName(inputs[1], "variable");
  int varid = -1;
  checkStatus(nc_inq_varid(ncid, name.c_str(), &varid), row);
  plhs[0] = makeDoubleScalar(varid);
}

NETCDFLIB_HANDLER(handleInqVarIDs) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  plhs[0] = listIds([&](int* n, int* ids) { return nc_inq_varids(ncid, n, ids); }, row);
}

NETCDFLIB_HANDLER(handleRenameVar) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  const std::string name = getName(inputs[2], "variable");
  checkStatus(nc_rename_var(ncid, varid, name.c_str()), row);
}
