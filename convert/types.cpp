#include "convert/types.hpp"

std::optional<DataKind> kindOfOperation(int opId, int firstOpId, bool withUbyte) noexcept {
  int offset = opId - firstOpId;
  const int members = withUbyte ? 14 : 13;
  if (offset < 0 || offset >= members) return std::nullopt;
  // Families without Ubyte go straight from Uchar to Text.
  if (!withUbyte && offset >= static_cast<int>(DataKind::Ubyte)) ++offset;
  return static_cast<DataKind>(offset);
}

std::optional<qvClassID> hostClassOf(nc_type type) noexcept {
  switch (type) {
    case NC_BYTE:
      return qvINT8_CLASS;
    case NC_CHAR:
      return qvCHAR_CLASS;
    case NC_SHORT:
      return qvINT16_CLASS;
    case NC_INT:
      return qvINT32_CLASS;
    case NC_FLOAT:
      return qvSINGLE_CLASS;
    case NC_DOUBLE:
      return qvDOUBLE_CLASS;
    case NC_UBYTE:
      return qvUINT8_CLASS;
    case NC_USHORT:
      return qvUINT16_CLASS;
    case NC_UINT:
      return qvUINT32_CLASS;
    case NC_INT64:
      return qvINT64_CLASS;
    case NC_UINT64:
      return qvUINT64_CLASS;
    case NC_STRING:
      return qvSTRING_CLASS;
    default:
      return std::nullopt;
  }
}

std::size_t atomicElementSize(nc_type type) noexcept {
  const auto kind = numericKindOf(type);
  if (!kind) return 0;
  return visitNumericKind(*kind,
                          [](auto traits) { return sizeof(typename decltype(traits)::Element); });
}

std::optional<DataKind> numericKindOf(nc_type type) noexcept {
  switch (type) {
    case NC_DOUBLE:
      return DataKind::Double;
    case NC_FLOAT:
      return DataKind::Float;
    case NC_INT64:
      return DataKind::Int64;
    case NC_UINT64:
      return DataKind::Uint64;
    case NC_INT:
      return DataKind::Int;
    case NC_UINT:
      return DataKind::Uint;
    case NC_SHORT:
      return DataKind::Short;
    case NC_USHORT:
      return DataKind::Ushort;
    case NC_BYTE:
      return DataKind::Schar;
    case NC_UBYTE:
      return DataKind::Uchar;
    default:
      return std::nullopt;
  }
}
