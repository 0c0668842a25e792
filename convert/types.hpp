// The one type table: each kind of data the typed operations move ties a netCDF type
// to its host class, its C++ element type and its typed netCDF-C functions. Data and
// attribute handlers are generic over it; text, string and variable-length data are the
// special cases.
#pragma once

#include <netcdf.h>

#include <cstddef>
#include <optional>
#include <utility>

#include "qvhost/array.hpp"

// In the order the typed operation families list them ("getVarDouble" ... "getVarVlen").
// Ubyte exists for attributes only: uint8 like Uchar, through the _ubyte functions.
enum class DataKind {
  Double,
  Float,
  Int64,
  Uint64,
  Int,
  Uint,
  Short,
  Ushort,
  Schar,
  Uchar,
  Ubyte,
  Text,
  String,
  Vlen,
};

template <DataKind K>
struct TypeTraits;

#define NETCDFLIB_NUMERIC_TRAITS(KIND, ELEMENT, NCTYPE, HOSTCLASS, SUFFIX) \
  template <>                                                              \
  struct TypeTraits<DataKind::KIND> {                                      \
    using Element = ELEMENT;                                               \
    static constexpr nc_type ncType = NCTYPE;                              \
    static constexpr qvClassID hostClass = HOSTCLASS;                      \
    static constexpr auto getVar = &nc_get_var_##SUFFIX;                   \
    static constexpr auto getVars = &nc_get_vars_##SUFFIX;                 \
    static constexpr auto putVar = &nc_put_var_##SUFFIX;                   \
    static constexpr auto putVars = &nc_put_vars_##SUFFIX;                 \
    static constexpr auto getAtt = &nc_get_att_##SUFFIX;                   \
    static constexpr auto putAtt = &nc_put_att_##SUFFIX;                   \
  }

NETCDFLIB_NUMERIC_TRAITS(Double, double, NC_DOUBLE, qvDOUBLE_CLASS, double);
NETCDFLIB_NUMERIC_TRAITS(Float, float, NC_FLOAT, qvSINGLE_CLASS, float);
NETCDFLIB_NUMERIC_TRAITS(Int64, long long, NC_INT64, qvINT64_CLASS, longlong);
NETCDFLIB_NUMERIC_TRAITS(Uint64, unsigned long long, NC_UINT64, qvUINT64_CLASS, ulonglong);
NETCDFLIB_NUMERIC_TRAITS(Int, int, NC_INT, qvINT32_CLASS, int);
NETCDFLIB_NUMERIC_TRAITS(Uint, unsigned int, NC_UINT, qvUINT32_CLASS, uint);
NETCDFLIB_NUMERIC_TRAITS(Short, short, NC_SHORT, qvINT16_CLASS, short);
NETCDFLIB_NUMERIC_TRAITS(Ushort, unsigned short, NC_USHORT, qvUINT16_CLASS, ushort);
NETCDFLIB_NUMERIC_TRAITS(Schar, signed char, NC_BYTE, qvINT8_CLASS, schar);
NETCDFLIB_NUMERIC_TRAITS(Uchar, unsigned char, NC_UBYTE, qvUINT8_CLASS, uchar);
NETCDFLIB_NUMERIC_TRAITS(Ubyte, unsigned char, NC_UBYTE, qvUINT8_CLASS, ubyte);
#undef NETCDFLIB_NUMERIC_TRAITS

template <>
struct TypeTraits<DataKind::Text> {
  using Element = char;
  static constexpr nc_type ncType = NC_CHAR;
  static constexpr qvClassID hostClass = qvCHAR_CLASS;
  static constexpr auto getVar = &nc_get_var_text;
  static constexpr auto getVars = &nc_get_vars_text;
  static constexpr auto putVar = &nc_put_var_text;
  static constexpr auto putVars = &nc_put_vars_text;
};

template <>
struct TypeTraits<DataKind::String> {
  using Element = char*;
  static constexpr nc_type ncType = NC_STRING;
  static constexpr qvClassID hostClass = qvSTRING_CLASS;
  static constexpr auto getVar = &nc_get_var_string;
  static constexpr auto getVars = &nc_get_vars_string;
  static constexpr auto putVar = &nc_put_var_string;
  static constexpr auto putVars = &nc_put_vars_string;
};

// Untyped: netCDF-C takes the records as they are.
template <>
struct TypeTraits<DataKind::Vlen> {
  using Element = nc_vlen_t;
  static constexpr qvClassID hostClass = qvCELL_CLASS;
  static constexpr auto getVar = &nc_get_var;
  static constexpr auto getVars = &nc_get_vars;
  static constexpr auto putVar = &nc_put_var;
  static constexpr auto putVars = &nc_put_vars;
};

// Calls f(TypeTraits<K>{}) for the numeric kind k and returns its result. k must be
// numeric.
template <class F>
decltype(auto) visitNumericKind(DataKind k, F&& f) {
  switch (k) {
    case DataKind::Double:
      return f(TypeTraits<DataKind::Double>{});
    case DataKind::Float:
      return f(TypeTraits<DataKind::Float>{});
    case DataKind::Int64:
      return f(TypeTraits<DataKind::Int64>{});
    case DataKind::Uint64:
      return f(TypeTraits<DataKind::Uint64>{});
    case DataKind::Int:
      return f(TypeTraits<DataKind::Int>{});
    case DataKind::Uint:
      return f(TypeTraits<DataKind::Uint>{});
    case DataKind::Short:
      return f(TypeTraits<DataKind::Short>{});
    case DataKind::Ushort:
      return f(TypeTraits<DataKind::Ushort>{});
    case DataKind::Schar:
      return f(TypeTraits<DataKind::Schar>{});
    case DataKind::Uchar:
      return f(TypeTraits<DataKind::Uchar>{});
    default:
      return f(TypeTraits<DataKind::Ubyte>{});
  }
}

constexpr bool isNumericKind(DataKind k) noexcept { return k <= DataKind::Ubyte; }

// The kind of an operation in a family whose first member has id firstOpId and whose
// members follow DataKind's order; withUbyte says whether the family has the Ubyte
// member (attributes). Empty when opId is outside the family.
std::optional<DataKind> kindOfOperation(int opId, int firstOpId, bool withUbyte) noexcept;

// Host class of an atomic netCDF type (NC_BYTE ... NC_STRING); empty for user types and
// NC_NAT.
std::optional<qvClassID> hostClassOf(nc_type type) noexcept;

// Size in bytes of one element of an atomic numeric netCDF type, 0 for others (NC_CHAR
// and NC_STRING included).
std::size_t atomicElementSize(nc_type type) noexcept;

constexpr bool isAtomicType(nc_type t) noexcept { return t >= NC_BYTE && t <= NC_STRING; }

// The numeric kind of an atomic numeric netCDF type (NC_UBYTE is Uchar); empty otherwise.
std::optional<DataKind> numericKindOf(nc_type type) noexcept;
