// Fill values of variables of every type, variable-length and string types included.
#include <netcdf.h>

#include <cstring>
#include <string>

#include "convert/nc_buffers.hpp"
#include "convert/outputs.hpp"
#include "convert/scalars.hpp"
#include "convert/text.hpp"
#include "convert/types.hpp"
#include "convert/vlen.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/metadata/metadata.hpp"
#include "qvhost/strings.hpp"
#include "qvhost/text.hpp"

namespace {
constexpr const char* kFillValue = "FILLVALUE";

[[noreturn]] void unhandledFill(nc_type xtype) {
  qvErrMsgId(QUARNA::imagesci::netcdf::unhandledFillDatatype(xtype));
}

// The base of a variable-length user type; any other user type has no fill we can move.
nc_type fillVlenBase(int ncid, nc_type xtype, const OperationRow& row) {
  int typeClass = 0;
  checkStatus(nc_inq_user_type(ncid, xtype, nullptr, nullptr, nullptr, nullptr, &typeClass), row);
  if (typeClass != NC_VLEN) unhandledFill(xtype);
  nc_type base = NC_NAT;
  nc_inq_vlen(ncid, xtype, nullptr, nullptr, &base);
  return base;
}

// netCDF-C refuses to switch fill values off for strings (NC_EINVAL) but accepts it for
// variable-length types, which HDF5 then cannot store: enddef and close fail with an HDF
// error and the file stays open for good. Those get the refusal strings get.
void refuseNoFillOfVlen(int ncid, int varid, const OperationRow& row) {
  nc_type xtype = NC_NAT;
  int typeClass = 0;
  if (nc_inq_vartype(ncid, varid, &xtype) == NC_NOERR && xtype > NC_STRING &&
      nc_inq_user_type(ncid, xtype, nullptr, nullptr, nullptr, nullptr, &typeClass) == NC_NOERR &&
      typeClass == NC_VLEN) {
    checkStatus(NC_EINVAL, row);
  }
}

void defineFill(int ncid, int varid, const qvArray* value, const OperationRow& row) {
  nc_type xtype = NC_NAT;
  checkStatus(nc_inq_var(ncid, varid, nullptr, &xtype, nullptr, nullptr, nullptr), row);
  if (const auto kind = numericKindOf(xtype)) {
    visitNumericKind(*kind, [&](auto traits) {
      using T = typename decltype(traits)::Element;
      const T fill = getScalar<T>(value, kFillValue, ScalarUse::FillValue);
      checkStatus(nc_def_var_fill(ncid, varid, 0, &fill), row);
    });
  } else if (xtype == NC_CHAR) {
    // char(0) is a fill value like any other character.
    const std::string text = getCharText(value, kFillValue);
    if (text.size() > 1) {
      qvErrMsgId(QUARNA::imagesci::netcdf::badScalarArgument(kFillValue, "7-bit ASCII char"));
    }
    const char fill = text.empty() ? '\0' : text[0];
    checkStatus(nc_def_var_fill(ncid, varid, 0, &fill), row);
  } else if (xtype == NC_STRING) {
    const std::string text = getName(value, kFillValue);
    const char* fill = text.c_str();
    checkStatus(nc_def_var_fill(ncid, varid, 0, &fill), row);
  } else {
    const nc_type base = fillVlenBase(ncid, xtype, row);
    // One element: the cell holds the fill value's contents.
    VlenRecords records(ncid, base, value, kFillValue);
    if (records.size() != 1) qvErrMsgId(QUARNA::imagesci::netcdf::fillValueBadArgument());
    checkStatus(nc_def_var_fill(ncid, varid, 0, records.data()), row);
  }
}

}  // namespace

void handleInqVarFill(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                      const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  nc_type xtype = NC_NAT;
  checkStatus(nc_inq_vartype(ncid, varid, &xtype), row);
  int noFill = 0;
  qvArrayPtr fill;
  if (xtype == NC_STRING) {
    fill = createStringArray(std::u16string());
    char* text = nullptr;
    checkStatus(nc_inq_var_fill(ncid, varid, &noFill, &text), row);
    if (text != nullptr) {
      if (noFill == 0) setStringElement(fill.get(), 0, utf8_to_ustring(text));
      nc_free_string(1, &text);
    }
  } else if (const auto cls = hostClassOf(xtype)) {
    // netCDF-C writes the value straight into the element; a char fill's one byte lands
    // in the low byte of the zeroed 16-bit character.
    fill = makeScalarOf(*cls);
    checkStatus(nc_inq_var_fill(ncid, varid, &noFill, qvGetData(fill.get())), row);
  } else {
    const nc_type base = fillVlenBase(ncid, xtype, row);
    NetcdfVlenBuffer record(1, ncid, xtype);
    checkStatus(nc_inq_var_fill(ncid, varid, &noFill, record.data()), row);
    record.markFilled();
    nc_vlen_t shown = record.data()[0];
    if (noFill != 0) shown.len = 0;
    fill = vlenToCells(ncid, base, &shown, 1, {1, 1});
  }
  plhs[0] = makeLogicalScalar(noFill != 0);
  plhs[1] = std::move(fill);
}

// Unlike the other operations, it names its inputs in upper case.
void handleDefVarFill(int, qvArrayPtr*, int, const qvArray* const* inputs,
                      const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "NCID");
  const int varid = getScalar<int>(inputs[1], "VARID");
  const bool noFill = getLogicalFlag(inputs[2], "FILL FLAG");
  if (noFill) {
    refuseNoFillOfVlen(ncid, varid, row);
    checkStatus(nc_def_var_fill(ncid, varid, 1, nullptr), row);
  } else {
    defineFill(ncid, varid, inputs[3], row);
  }
}
