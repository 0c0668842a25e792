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

namespace {
enum OpId {
  kDefGrp = 6,
  kInqGrpName = 66,
  kInqGrpNameFull = 67,
  kInqGrps = 68,
  kInqGrpParent = 69,
  kInqNcid = 71
};
}

void handleGroups(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                  const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  switch (row.opId) {
    case kDefGrp: {
      const std::string name = getName(inputs[1], "group name");
      refuseHdf5NameClash(ncid, name, NewObject::GroupOrType, row);
      int group = -1;
      checkStatus(nc_def_grp(ncid, name.c_str(), &group), row);
      plhs[0] = makeDoubleScalar(group);
      return;
    }
    case kInqNcid: {
      const std::string name = getName(inputs[1], "group name");
      int group = -1;
      checkStatus(nc_inq_ncid(ncid, name.c_str(), &group), row);
      plhs[0] = makeDoubleScalar(group);
      return;
    }
    case kInqGrps:
      plhs[0] = listIds([&](int* n, int* ids) { return nc_inq_grps(ncid, n, ids); }, row);
      return;
    case kInqGrpName: {
      char name[NC_MAX_NAME + 1] = {};
      checkStatus(nc_inq_grpname(ncid, name), row);
      plhs[0] = makeNameResult(name);
      return;
    }
    case kInqGrpNameFull: {
      std::size_t length = 0;
      checkStatus(nc_inq_grpname_len(ncid, &length), row);
      std::vector<char> path(length + 1, '\0');
      checkStatus(nc_inq_grpname_full(ncid, nullptr, path.data()), row);
      plhs[0] = makeNameResult(path.data());
      return;
    }
    case kInqGrpParent: {
      int parent = -1;
      checkStatus(nc_inq_grp_parent(ncid, &parent), row);
      plhs[0] = makeDoubleScalar(parent);
      return;
    }
    default:
      qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedOperation(row.name));
  }
}
