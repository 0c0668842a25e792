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
enum OpId {
  kDefEnum = 186,
  kInsertEnum,
  kInqEnum,
  kInqEnumMember,
  kInqEnumIdent,
  kDefCompound,
  kInsertCompound,
  kInsertArrayCompound,
  kInqCompound,
  kInqCompoundField,
  kInqCompoundFieldIndex,
  kDefOpaque,
  kInqOpaque,
};

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
}  // namespace

void handleUserTypeDefinitions(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                               const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  nc_type type = NC_NAT;
  char name[NC_MAX_NAME + 1] = {};
  std::size_t size = 0, count = 0;
  switch (row.opId) {
    case kDefEnum: {
      const std::string typeName = definedName(ncid, inputs[1], row);
      const int base = getScalar<int>(inputs[2], "baseType");
      // netCDF-C 4.9.0 takes any base here; HDF5 then cannot write the type at endDef.
      if (!isIntegerType(base)) checkStatus(NC_EBADTYPE, row);
      checkStatus(nc_def_enum(ncid, base, typeName.c_str(), &type), row);
      plhs[0] = makeDoubleScalar(type);
      return;
    }
    case kDefCompound:
    case kDefOpaque: {
      const std::string typeName = definedName(ncid, inputs[1], row);
      size = getScalar<std::size_t>(inputs[2], "size");
      checkStatus(row.opId == kDefCompound
                      ? nc_def_compound(ncid, size, typeName.c_str(), &type)
                      : nc_def_opaque(ncid, size, typeName.c_str(), &type),
                  row);
      plhs[0] = makeDoubleScalar(type);
      return;
    }
    default:
      break;
  }
  type = getScalar<int>(inputs[1], "typeID");
  switch (row.opId) {
    case kInsertEnum: {
      const std::string member = getName(inputs[2], "memberName");
      insertEnumMember(ncid, type, member, inputs[3], row);
      return;
    }
    case kInqEnum: {
      nc_type base = NC_NAT;
      checkStatus(nc_inq_enum(ncid, type, name, &base, &size, &count), row);
      plhs[0] = makeNameResult(name);
      plhs[1] = makeDoubleScalar(base);
      plhs[2] = makeDoubleScalar(static_cast<double>(size));
      plhs[3] = makeDoubleScalar(static_cast<double>(count));
      return;
    }
    case kInqEnumMember: {
      const int index = getScalar<int>(inputs[2], "memberIndex");
      const nc_type base = enumBase(ncid, type, row);
      const auto cls = hostClassOf(base);
      if (!cls || atomicElementSize(base) == 0) checkStatus(NC_EBADTYPE, row);
      qvArrayPtr value = makeNumericOutput(*cls, {1, 1});
      checkStatus(nc_inq_enum_member(ncid, type, index, name, qvGetData(value.get())), row);
      plhs[0] = makeNameResult(name);
      plhs[1] = std::move(value);
      return;
    }
    case kInqEnumIdent: {
      const long long value = getScalar<long long>(inputs[2], "value");
      checkStatus(nc_inq_enum_ident(ncid, type, value, name), row);
      plhs[0] = makeNameResult(name);
      return;
    }
    case kInsertCompound:
    case kInsertArrayCompound: {
      const std::string field = getName(inputs[2], "fieldName");
      const auto offset = getScalar<std::size_t>(inputs[3], "offset");
      const int fieldType = getScalar<int>(inputs[4], "fieldType");
      // netCDF-C 4.9.0 accepts a compound inside itself (directly or through other types),
      // which nothing can then read or write.
      if (typeHolds(ncid, fieldType, type)) checkStatus(NC_EBADTYPE, row);
      if (row.opId == kInsertCompound) {
        refuseFieldBeyondSize(ncid, type, offset, fieldType, {}, row);
        checkStatus(nc_insert_compound(ncid, type, field.c_str(), offset, fieldType), row);
        return;
      }
      const std::vector<std::size_t> sizes = getChunkSizeRow(inputs[5], "dimSizes");
      std::vector<int> dims;
      // netCDF-C 4.9.0 refuses only sizes past INT_MAX; no dimensions or a zero size make
      // a field HDF5 cannot hold.
      if (sizes.empty()) checkStatus(NC_EINVAL, row);
      for (const std::size_t s : sizes) {
        if (s == 0 || s > INT_MAX) checkStatus(NC_EINVAL, row);
        dims.push_back(static_cast<int>(s));
      }
      refuseFieldBeyondSize(ncid, type, offset, fieldType, dims, row);
      checkStatus(nc_insert_array_compound(ncid, type, field.c_str(), offset, fieldType,
                                           static_cast<int>(dims.size()), dims.data()),
                  row);
      return;
    }
    case kInqCompound:
      checkStatus(nc_inq_compound(ncid, type, name, &size, &count), row);
      plhs[0] = makeNameResult(name);
      plhs[1] = makeDoubleScalar(static_cast<double>(size));
      plhs[2] = makeDoubleScalar(static_cast<double>(count));
      return;
    case kInqCompoundField: {
      const int index = getScalar<int>(inputs[2], "fieldIndex");
      nc_type fieldType = NC_NAT;
      int ndims = 0;
      checkStatus(
          nc_inq_compound_field(ncid, type, index, name, &size, &fieldType, &ndims, nullptr), row);
      std::vector<int> sizes(static_cast<std::size_t>(std::max(ndims, 0)), 0);
      if (ndims > 0) {
        checkStatus(nc_inq_compound_fielddim_sizes(ncid, type, index, sizes.data()), row);
      }
      plhs[0] = makeNameResult(name);
      plhs[1] = makeDoubleScalar(static_cast<double>(size));
      plhs[2] = makeDoubleScalar(fieldType);
      plhs[3] = fieldDimRow(sizes);
      return;
    }
    case kInqCompoundFieldIndex: {
      const std::string field = getName(inputs[2], "fieldName");
      int index = -1;
      checkStatus(nc_inq_compound_fieldindex(ncid, type, field.c_str(), &index), row);
      plhs[0] = makeDoubleScalar(index);
      return;
    }
    case kInqOpaque:
      checkStatus(nc_inq_opaque(ncid, type, name, &size), row);
      plhs[0] = makeNameResult(name);
      plhs[1] = makeDoubleScalar(static_cast<double>(size));
      return;
    default:
      qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedOperation(row.name));
  }
}
