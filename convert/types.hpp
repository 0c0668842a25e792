// The one type list: each kind of data the typed operations move ties its name in
// operation names, its C++ element type, its netCDF type, its host class and its typed
// netCDF-C functions. Everything else about types is derived from it (the host's own
// list, qvNumericTypes, ties host classes to their element types). Text, string and
// variable-length data are the special kinds after the numeric ones.
#pragma once

#include <netcdf.h>

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

#include "qvhost/array.hpp"

// X(kind, element, netCDF type, host class, netCDF-C suffix), in the order the typed
// operation families list them. Ubyte exists for attributes only: uint8 like Uchar,
// through the _ubyte functions; lookups by netCDF type find Uchar first.
#define NETCDFLIB_NUMERIC_KINDS(X)                                     \
  X(Double, double, NC_DOUBLE, qvDOUBLE_CLASS, double)                 \
  X(Float, float, NC_FLOAT, qvSINGLE_CLASS, float)                     \
  X(Int64, long long, NC_INT64, qvINT64_CLASS, longlong)               \
  X(Uint64, unsigned long long, NC_UINT64, qvUINT64_CLASS, ulonglong)  \
  X(Int, int, NC_INT, qvINT32_CLASS, int)                              \
  X(Uint, unsigned int, NC_UINT, qvUINT32_CLASS, uint)                 \
  X(Short, short, NC_SHORT, qvINT16_CLASS, short)                      \
  X(Ushort, unsigned short, NC_USHORT, qvUINT16_CLASS, ushort)         \
  X(Schar, signed char, NC_BYTE, qvINT8_CLASS, schar)                  \
  X(Uchar, unsigned char, NC_UBYTE, qvUINT8_CLASS, uchar)              \
  X(Ubyte, unsigned char, NC_UBYTE, qvUINT8_CLASS, ubyte)

// X(kind, element, netCDF type, host class, netCDF-C suffix); Vlen is untyped: netCDF-C
// takes the records as they are.
#define NETCDFLIB_SPECIAL_KINDS(X)                       \
  X(Text, char, NC_CHAR, qvCHAR_CLASS, _text)            \
  X(String, char*, NC_STRING, qvSTRING_CLASS, _string)   \
  X(Vlen, nc_vlen_t, NC_NAT, qvCELL_CLASS, )

#define NETCDFLIB_KIND_ENUM(KIND, ...) KIND,
enum class DataKind { NETCDFLIB_NUMERIC_KINDS(NETCDFLIB_KIND_ENUM) NETCDFLIB_SPECIAL_KINDS(NETCDFLIB_KIND_ENUM) };
#undef NETCDFLIB_KIND_ENUM

#define NETCDFLIB_KIND_NAME(KIND, ...) #KIND,
// Spelling of each kind in operation names, in DataKind order.
inline constexpr std::string_view kDataKindNames[] = {
    NETCDFLIB_NUMERIC_KINDS(NETCDFLIB_KIND_NAME) NETCDFLIB_SPECIAL_KINDS(NETCDFLIB_KIND_NAME)};
#undef NETCDFLIB_KIND_NAME

template <DataKind K>
struct TypeTraits;

#define NETCDFLIB_TRAITS(KIND, ELEMENT, NCTYPE, HOSTCLASS, SUFFIX) \
  template <>                                                      \
  struct TypeTraits<DataKind::KIND> {                              \
    using Element = ELEMENT;                                       \
    static constexpr nc_type ncType = NCTYPE;                      \
    static constexpr qvClassID hostClass = HOSTCLASS;              \
    static constexpr auto getVar = &nc_get_var##SUFFIX;            \
    static constexpr auto getVars = &nc_get_vars##SUFFIX;          \
    static constexpr auto putVar = &nc_put_var##SUFFIX;            \
    static constexpr auto putVars = &nc_put_vars##SUFFIX;          \
    static constexpr auto getAtt = &nc_get_att##SUFFIX;            \
    static constexpr auto putAtt = &nc_put_att##SUFFIX;            \
  };
#define NETCDFLIB_NUMERIC_TRAITS(KIND, ELEMENT, NCTYPE, HOSTCLASS, SUFFIX) \
  NETCDFLIB_TRAITS(KIND, ELEMENT, NCTYPE, HOSTCLASS, _##SUFFIX)
NETCDFLIB_NUMERIC_KINDS(NETCDFLIB_NUMERIC_TRAITS)
NETCDFLIB_SPECIAL_KINDS(NETCDFLIB_TRAITS)
#undef NETCDFLIB_NUMERIC_TRAITS
#undef NETCDFLIB_TRAITS

constexpr bool isNumericKind(DataKind k) noexcept { return k <= DataKind::Ubyte; }

// Calls f(TypeTraits<K>{}) for the numeric kind k and returns its result. k must be
// numeric.
template <class F>
decltype(auto) visitNumericKind(DataKind k, F&& f) {
  return [&]<std::size_t... I>(std::index_sequence<I...>) -> decltype(auto) {
    using R = decltype(f(TypeTraits<DataKind::Double>{}));
    using Call = R (*)(F&);
    static constexpr Call kCalls[] = {
        [](F& g) -> R { return g(TypeTraits<static_cast<DataKind>(I)>{}); }...};
    return kCalls[static_cast<std::size_t>(k)](f);
  }(std::make_index_sequence<static_cast<std::size_t>(DataKind::Ubyte) + 1>{});
}

constexpr bool isAtomicType(nc_type t) noexcept { return t >= NC_BYTE && t <= NC_STRING; }

// The numeric kind of an atomic numeric netCDF type (NC_UBYTE is Uchar); empty otherwise.
constexpr std::optional<DataKind> numericKindOf(nc_type type) noexcept {
#define NETCDFLIB_NC_TYPE(KIND, ELEMENT, NCTYPE, ...) NCTYPE,
  constexpr nc_type kTypes[] = {NETCDFLIB_NUMERIC_KINDS(NETCDFLIB_NC_TYPE)};
#undef NETCDFLIB_NC_TYPE
  for (std::size_t k = 0; k < std::size(kTypes); ++k) {
    if (kTypes[k] == type) return static_cast<DataKind>(k);
  }
  return std::nullopt;
}

// Host class of an atomic netCDF type (NC_BYTE ... NC_STRING); empty for user types and
// NC_NAT.
inline std::optional<qvClassID> hostClassOf(nc_type type) noexcept {
  if (type == NC_CHAR) return TypeTraits<DataKind::Text>::hostClass;
  if (type == NC_STRING) return TypeTraits<DataKind::String>::hostClass;
  const auto kind = numericKindOf(type);
  if (!kind) return std::nullopt;
  return visitNumericKind(*kind, [](auto traits) { return decltype(traits)::hostClass; });
}

// Size in bytes of one element of an atomic numeric netCDF type, 0 for others (NC_CHAR
// and NC_STRING included).
inline std::size_t atomicElementSize(nc_type type) noexcept {
  const auto kind = numericKindOf(type);
  if (!kind) return 0;
  return visitNumericKind(*kind,
                          [](auto traits) { return sizeof(typename decltype(traits)::Element); });
}
