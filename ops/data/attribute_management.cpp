// Inquiring, copying, deleting and renaming attributes without moving their values.
#include <netcdf.h>

#include <string>

#include "convert/outputs.hpp"
#include "convert/scalars.hpp"
#include "convert/text.hpp"
#include "gateway/status.hpp"
#include "ops/data/data.hpp"

namespace {
// The attribute every one of these operations starts from.
struct AttributeRef {
  int ncid;
  int varid;
  std::string name;
};

AttributeRef getAttributeRef(const qvArray* const* inputs) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  return {ncid, varid, getName(inputs[2], "attribute")};
}
}  // namespace

void handleInqAtt(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                  const OperationRow& row) {
  const AttributeRef att = getAttributeRef(inputs);
  nc_type xtype = NC_NAT;
  std::size_t len = 0;
  checkStatus(nc_inq_att(att.ncid, att.varid, att.name.c_str(), &xtype, &len), row);
  plhs[0] = makeDoubleScalar(xtype);
  plhs[1] = makeDoubleScalar(static_cast<double>(len));
}

void handleInqAttID(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                    const OperationRow& row) {
  const AttributeRef att = getAttributeRef(inputs);
  int attnum = -1;
  checkStatus(nc_inq_attid(att.ncid, att.varid, att.name.c_str(), &attnum), row);
  plhs[0] = makeDoubleScalar(attnum);
}

void handleInqAttName(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                      const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  const int attid = getScalar<int>(inputs[2], "attid");
  char name[NC_MAX_NAME + 1] = {};
  checkStatus(nc_inq_attname(ncid, varid, attid, name), row);
  plhs[0] = makeNameResult(name);
}

void handleCopyAtt(int, qvArrayPtr*, int, const qvArray* const* inputs, const OperationRow& row) {
  const AttributeRef att = getAttributeRef(inputs);
  // The destination's ids are reported under the same names as the source's.
  const int destNcid = getScalar<int>(inputs[3], "ncid");
  const int destVarid = getScalar<int>(inputs[4], "varid");
  checkStatus(nc_copy_att(att.ncid, att.varid, att.name.c_str(), destNcid, destVarid), row);
}

void handleDelAtt(int, qvArrayPtr*, int, const qvArray* const* inputs, const OperationRow& row) {
  const AttributeRef att = getAttributeRef(inputs);
  checkStatus(nc_del_att(att.ncid, att.varid, att.name.c_str()), row);
}

void handleRenameAtt(int, qvArrayPtr*, int, const qvArray* const* inputs, const OperationRow& row) {
  const AttributeRef att = getAttributeRef(inputs);
  const std::string newName = getName(inputs[3], "attribute");
  checkStatus(nc_rename_att(att.ncid, att.varid, att.name.c_str(), newName.c_str()), row);
}
