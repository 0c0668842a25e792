// Enum, compound and opaque types: definitions and inquiries.
#include <netcdf.h>

#include <algorithm>
#include <climits>
#include <vector>

#include "convert/index.hpp"
#include "convert/outputs.hpp"
#include "convert/read_outputs.hpp"
#include "convert/scalars.hpp"
#include "convert/text.hpp"
#include "convert/types.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/metadata/hdf5_names.hpp"
#include "ops/metadata/metadata.hpp"

namespace {

nc_type enumBase(int ncid, nc_type type, const OperationRow& row) {
  nc_type base = NC_NAT;
  checkStatus(nc_inq_enum(ncid, type, nullptr, &base, nullptr, nullptr), row);
  return base;
}

// The value converted to the base type, with the range check of every numeric argument.
void insertEnumMember(int ncid, nc_type type, const std::string& name, const qvArray* value,
                      const OperationRow& row) {
  const auto insert = [&](auto v) {
    checkStatus(nc_insert_enum(ncid, type, name.c_str(), &v), row);
  };
  switch (enumBase(ncid, type, row)) {
    case NC_BYTE: return insert(getScalar<signed char>(value, "value"));
    case NC_UBYTE: return insert(getScalar<unsigned char>(value, "value"));
    case NC_SHORT: return insert(getScalar<short>(value, "value"));
    case NC_USHORT: return insert(getScalar<unsigned short>(value, "value"));
    case NC_INT: return insert(getScalar<int>(value, "value"));
    case NC_UINT: return insert(getScalar<unsigned int>(value, "value"));
    case NC_INT64: return insert(getScalar<long long>(value, "value"));
    case NC_UINT64: return insert(getScalar<unsigned long long>(value, "value"));
    default: checkStatus(NC_EBADTYPE, row);
  }
}

// Field dimension sizes in host order, 0-by-0 for a scalar field.
qvArrayPtr fieldDimRow(const std::vector<int>& sizes) {
  if (sizes.empty()) {
    return matrix::detail::do_create_numeric(std::vector<std::uint64_t>{0, 0}, qvDOUBLE_CLASS,
                                             qvREAL);
  }
  qvArrayPtr out = makeNumericOutput(qvDOUBLE_CLASS, {1, sizes.size()});
  std::transform(sizes.rbegin(), sizes.rend(), static_cast<double*>(qvGetData(out.get())),
                 [](int s) { return static_cast<double>(s); });
  return out;
}

bool isIntegerType(int type) {
  return type == NC_BYTE || type == NC_UBYTE || type == NC_SHORT || type == NC_USHORT ||
         type == NC_INT || type == NC_UINT || type == NC_INT64 || type == NC_UINT64;
}

// Whether type is needle or holds it at any depth (fields, vlen bases).
bool typeHolds(int ncid, nc_type type, nc_type needle, int depth = 0) {
  if (type == needle) return true;
  int typeClass = 0;
  nc_type base = NC_NAT;
  std::size_t nfields = 0;
  if (type <= NC_MAX_ATOMIC_TYPE || depth > NC_MAX_VAR_DIMS ||
      nc_inq_user_type(ncid, type, nullptr, nullptr, &base, &nfields, &typeClass) != NC_NOERR) {
    return false;
  }
  if (typeClass == NC_VLEN) return typeHolds(ncid, base, needle, depth + 1);
  if (typeClass != NC_COMPOUND) return false;
  for (std::size_t k = 0; k < nfields; ++k) {
    nc_type fieldType = NC_NAT;
    if (nc_inq_compound_fieldtype(ncid, type, static_cast<int>(k), &fieldType) == NC_NOERR &&
        typeHolds(ncid, fieldType, needle, depth + 1)) {
      return true;
    }
  }
  return false;
}

// netCDF-C 4.9.0 takes a field that ends past the compound's size; reads and writes of
// such a type would go past each record.
void refuseFieldBeyondSize(int ncid, nc_type type, std::size_t offset, nc_type fieldType,
                           const std::vector<int>& dims, const OperationRow& row) {
  std::size_t size = 0, fieldSize = 0;
  checkStatus(nc_inq_compound_size(ncid, type, &size), row);
  checkStatus(nc_inq_type(ncid, fieldType, nullptr, &fieldSize), row);
  for (const int d : dims) {
    if (__builtin_mul_overflow(fieldSize, static_cast<std::size_t>(d), &fieldSize)) {
      checkStatus(NC_EINVAL, row);
    }
  }
  if (offset > size || fieldSize > size - offset) checkStatus(NC_EINVAL, row);
}

std::string definedName(int ncid, const qvArray* name, const OperationRow& row) {
  std::string out = getName(name, "typeName");
  refuseHdf5NameClash(ncid, out, NewObject::GroupOrType, row);
  return out;
}

// The inputs a field insertion starts with, converted in order.
struct Field {
  int ncid;
  nc_type type;
  std::string name;
  std::size_t offset;
  nc_type fieldType;
};

Field getField(const qvArray* const* inputs, const OperationRow& row) {
  Field f;
  f.ncid = getScalar<int>(inputs[0], "ncid");
  f.type = getScalar<int>(inputs[1], "typeID");
  f.name = getName(inputs[2], "fieldName");
  f.offset = getScalar<std::size_t>(inputs[3], "offset");
  f.fieldType = getScalar<int>(inputs[4], "fieldType");
  // netCDF-C 4.9.0 accepts a compound inside itself (directly or through other types),
  // which nothing can then read or write.
  if (typeHolds(f.ncid, f.fieldType, f.type)) checkStatus(NC_EBADTYPE, row);
  return f;
}
}  // namespace

NETCDFLIB_HANDLER(handleDefEnum) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const std::string name = definedName(ncid, inputs[1], row);
  const int base = getScalar<int>(inputs[2], "baseType");
  // netCDF-C 4.9.0 takes any base here; HDF5 then cannot write the type at endDef.
  if (!isIntegerType(base)) checkStatus(NC_EBADTYPE, row);
  nc_type type = NC_NAT;
  checkStatus(nc_def_enum(ncid, base, name.c_str(), &type), row);
  plhs[0] = makeDoubleScalar(type);
}

NETCDFLIB_HANDLER(handleInsertEnum) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int type = getScalar<int>(inputs[1], "typeID");
  const std::string member = getName(inputs[2], "memberName");
  insertEnumMember(ncid, type, member, inputs[3], row);
}

NETCDFLIB_HANDLER(handleInqEnum) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int type = getScalar<int>(inputs[1], "typeID");
  char name[NC_MAX_NAME + 1] = {};
  nc_type base = NC_NAT;
  std::size_t size = 0, count = 0;
  checkStatus(nc_inq_enum(ncid, type, name, &base, &size, &count), row);
  plhs[0] = makeNameResult(name);
  plhs[1] = makeDoubleScalar(base);
  plhs[2] = makeDoubleScalar(static_cast<double>(size));
  plhs[3] = makeDoubleScalar(static_cast<double>(count));
}

NETCDFLIB_HANDLER(handleInqEnumMember) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int type = getScalar<int>(inputs[1], "typeID");
  const int index = getScalar<int>(inputs[2], "memberIndex");
  const nc_type base = enumBase(ncid, type, row);
  const auto cls = hostClassOf(base);
  if (!cls || atomicElementSize(base) == 0) checkStatus(NC_EBADTYPE, row);
  char name[NC_MAX_NAME + 1] = {};
  qvArrayPtr value = makeNumericOutput(*cls, {1, 1});
  checkStatus(nc_inq_enum_member(ncid, type, index, name, qvGetData(value.get())), row);
  plhs[0] = makeNameResult(name);
  plhs[1] = std::move(value);
}

NETCDFLIB_HANDLER(handleInqEnumIdent) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int type = getScalar<int>(inputs[1], "typeID");
  const long long value = getScalar<long long>(inputs[2], "value");
  char name[NC_MAX_NAME + 1] = {};
  checkStatus(nc_inq_enum_ident(ncid, type, value, name), row);
  plhs[0] = makeNameResult(name);
}

// "defCompound", "defOpaque": a type of a given size, the netCDF-C call picked by the table.
template <int (*define)(int, std::size_t, const char*, nc_type*)>
void handleDefSizedType(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                        const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const std::string name = definedName(ncid, inputs[1], row);
  const auto size = getScalar<std::size_t>(inputs[2], "size");
  nc_type type = NC_NAT;
  checkStatus(define(ncid, size, name.c_str(), &type), row);
  plhs[0] = makeDoubleScalar(type);
}
template void handleDefSizedType<nc_def_compound>(int, qvArrayPtr*, int, const qvArray* const*,
                                                  const OperationRow&);
template void handleDefSizedType<nc_def_opaque>(int, qvArrayPtr*, int, const qvArray* const*,
                                                const OperationRow&);

NETCDFLIB_HANDLER(handleInsertCompound) {
  const Field f = getField(inputs, row);
  refuseFieldBeyondSize(f.ncid, f.type, f.offset, f.fieldType, {}, row);
  checkStatus(nc_insert_compound(f.ncid, f.type, f.name.c_str(), f.offset, f.fieldType), row);
}

NETCDFLIB_HANDLER(handleInsertArrayCompound) {
  const Field f = getField(inputs, row);
  const std::vector<std::size_t> sizes = getChunkSizeRow(inputs[5], "dimSizes");
  // netCDF-C 4.9.0 refuses only sizes past INT_MAX; no dimensions or a zero size make a
  // field HDF5 cannot hold.
  if (sizes.empty()) checkStatus(NC_EINVAL, row);
  std::vector<int> dims;
  for (const std::size_t size : sizes) {
    if (size == 0 || size > INT_MAX) checkStatus(NC_EINVAL, row);
    dims.push_back(static_cast<int>(size));
  }
  refuseFieldBeyondSize(f.ncid, f.type, f.offset, f.fieldType, dims, row);
  checkStatus(nc_insert_array_compound(f.ncid, f.type, f.name.c_str(), f.offset, f.fieldType,
                                       static_cast<int>(dims.size()), dims.data()),
              row);
}

NETCDFLIB_HANDLER(handleInqCompound) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int type = getScalar<int>(inputs[1], "typeID");
  char name[NC_MAX_NAME + 1] = {};
  std::size_t size = 0, count = 0;
  checkStatus(nc_inq_compound(ncid, type, name, &size, &count), row);
  plhs[0] = makeNameResult(name);
  plhs[1] = makeDoubleScalar(static_cast<double>(size));
  plhs[2] = makeDoubleScalar(static_cast<double>(count));
}

NETCDFLIB_HANDLER(handleInqCompoundField) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int type = getScalar<int>(inputs[1], "typeID");
  const int index = getScalar<int>(inputs[2], "fieldIndex");
  char name[NC_MAX_NAME + 1] = {};
  std::size_t offset = 0;
  nc_type fieldType = NC_NAT;
  int ndims = 0;
  // netCDF-C 4.9.0 takes any user-defined type for a compound here: a vlen crashes it and
  // an enum's members come back as fields. nc_inq_compound checks the class (NC_EBADTYPE).
  checkStatus(nc_inq_compound(ncid, type, nullptr, nullptr, nullptr), row);
  checkStatus(nc_inq_compound_field(ncid, type, index, name, &offset, &fieldType, &ndims, nullptr),
              row);
  std::vector<int> sizes(static_cast<std::size_t>(std::max(ndims, 0)), 0);
  if (ndims > 0) checkStatus(nc_inq_compound_fielddim_sizes(ncid, type, index, sizes.data()), row);
  plhs[0] = makeNameResult(name);
  plhs[1] = makeDoubleScalar(static_cast<double>(offset));
  plhs[2] = makeDoubleScalar(fieldType);
  plhs[3] = fieldDimRow(sizes);
}

NETCDFLIB_HANDLER(handleInqCompoundFieldIndex) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int type = getScalar<int>(inputs[1], "typeID");
  const std::string field = getName(inputs[2], "fieldName");
  int index = -1;
  checkStatus(nc_inq_compound_fieldindex(ncid, type, field.c_str(), &index), row);
  plhs[0] = makeDoubleScalar(index);
}

NETCDFLIB_HANDLER(handleInqOpaque) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int type = getScalar<int>(inputs[1], "typeID");
  char name[NC_MAX_NAME + 1] = {};
  std::size_t size = 0;
  checkStatus(nc_inq_opaque(ncid, type, name, &size), row);
  plhs[0] = makeNameResult(name);
  plhs[1] = makeDoubleScalar(static_cast<double>(size));
}
