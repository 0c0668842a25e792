#include "gateway/constants.hpp"

#include <netcdf.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <string>
#include <string_view>

#include "convert/outputs.hpp"
#include "convert/text.hpp"
#include "gateway/errors.hpp"
#include "qvhost/strings.hpp"
#include "qvhost/text.hpp"

namespace {

struct NamedConstant {
  double value;
  const char* longName;
  const char* shortName;
};

// An error code: netCDF-C's value, its name with and without "NC_".
#define NETCDFLIB_ERROR(NAME) NamedConstant{NAME, #NAME, &(#NAME)[3]}

// Values as the interface has always published them, some differing from netCDF-C's own
// (NC_FATAL, NC_VERBOSE) and some repeated. The FILL rows' -1 is never returned.
constexpr std::array<NamedConstant, 118> kConstants = {{
    {1, "NC_BYTE", "BYTE"},
    {7, "NC_UBYTE", "UBYTE"},
    {2, "NC_CHAR", "CHAR"},
    {3, "NC_SHORT", "SHORT"},
    {8, "NC_USHORT", "USHORT"},
    {4, "NC_INT", "INT"},
    {9, "NC_UINT", "UINT"},
    {4, "NC_LONG", "LONG"},
    {10, "NC_INT64", "INT64"},
    {11, "NC_UINT64", "UINT64"},
    {5, "NC_FLOAT", "FLOAT"},
    {6, "NC_DOUBLE", "DOUBLE"},
    {12, "NC_STRING", "STRING"},
    {0, "NC_NAT", "NAT"},
    {-1, "NC_FILL_BYTE", "FILL_BYTE"},
    {-1, "NC_FILL_UBYTE", "FILL_UBYTE"},
    {-1, "NC_FILL_CHAR", "FILL_CHAR"},
    {-1, "NC_FILL_SHORT", "FILL_SHORT"},
    {-1, "NC_FILL_USHORT", "FILL_USHORT"},
    {-1, "NC_FILL_INT", "FILL_INT"},
    {-1, "NC_FILL_UINT", "FILL_UINT"},
    {-1, "NC_FILL_INT64", "FILL_INT64"},
    {-1, "NC_FILL_UINT64", "FILL_UINT64"},
    {-1, "NC_FILL_FLOAT", "FILL_FLOAT"},
    {-1, "NC_FILL_DOUBLE", "FILL_DOUBLE"},
    {-1, "NC_FILL_STRING", "FILL_STRING"},
    {0, "NC_NOWRITE", "NOWRITE"},
    {1, "NC_WRITE", "WRITE"},
    {0, "NC_CLOBBER", "CLOBBER"},
    {4, "NC_NOCLOBBER", "NOCLOBBER"},
    {2048, "NC_SHARE", "SHARE"},
    {1024, "NC_LOCK", "LOCK"},
    {512, "NC_64BIT_OFFSET", "64BIT_OFFSET"},
    {4096, "NC_NETCDF4", "NETCDF4"},
    {256, "NC_CLASSIC_MODEL", "CLASSIC_MODEL"},
    {8, "NC_DISKLESS", "DISKLESS"},
    {16, "NC_MMAP", "MMAP"},
    {0, "NC_FILL", "FILL"},
    {256, "NC_NOFILL", "NOFILL"},
    {1, "NC_FORMAT_CLASSIC", "FORMAT_CLASSIC"},
    {2, "NC_FORMAT_64BIT", "FORMAT_64BIT"},
    {1024, "NC_MAX_DIMS", "MAX_DIMS"},
    {8192, "NC_MAX_ATTRS", "MAX_ATTRS"},
    {8192, "NC_MAX_VARS", "MAX_VARS"},
    {256, "NC_MAX_NAME", "MAX_NAME"},
    {1024, "NC_MAX_VAR_DIMS", "MAX_VAR_DIMS"},
    {-1, "NC2_ERR", "NC2_ERR"},
    {0, "NC_NOERR", "NOERR"},
    NETCDFLIB_ERROR(NC_EBADID),
    NETCDFLIB_ERROR(NC_ENFILE),
    NETCDFLIB_ERROR(NC_EEXIST),
    NETCDFLIB_ERROR(NC_EINVAL),
    NETCDFLIB_ERROR(NC_EPERM),
    NETCDFLIB_ERROR(NC_ENOTINDEFINE),
    NETCDFLIB_ERROR(NC_EINDEFINE),
    NETCDFLIB_ERROR(NC_EINVALCOORDS),
    NETCDFLIB_ERROR(NC_EMAXDIMS),
    NETCDFLIB_ERROR(NC_ENAMEINUSE),
    NETCDFLIB_ERROR(NC_ENOTATT),
    NETCDFLIB_ERROR(NC_EMAXATTS),
    NETCDFLIB_ERROR(NC_EBADTYPE),
    NETCDFLIB_ERROR(NC_EBADDIM),
    NETCDFLIB_ERROR(NC_EUNLIMPOS),
    NETCDFLIB_ERROR(NC_EMAXVARS),
    NETCDFLIB_ERROR(NC_ENOTVAR),
    NETCDFLIB_ERROR(NC_EGLOBAL),
    NETCDFLIB_ERROR(NC_ENOTNC),
    NETCDFLIB_ERROR(NC_ESTS),
    NETCDFLIB_ERROR(NC_EMAXNAME),
    NETCDFLIB_ERROR(NC_EUNLIMIT),
    NETCDFLIB_ERROR(NC_ENORECVARS),
    NETCDFLIB_ERROR(NC_ECHAR),
    NETCDFLIB_ERROR(NC_EEDGE),
    NETCDFLIB_ERROR(NC_ESTRIDE),
    NETCDFLIB_ERROR(NC_EBADNAME),
    NETCDFLIB_ERROR(NC_ERANGE),
    NETCDFLIB_ERROR(NC_ENOMEM),
    NETCDFLIB_ERROR(NC_EVARSIZE),
    NETCDFLIB_ERROR(NC_EDIMSIZE),
    NETCDFLIB_ERROR(NC_ETRUNC),
    {1, "NC_FATAL", "FATAL"},
    {-1, "NC_GLOBAL", "GLOBAL"},
    {0, "NC_UNLIMITED", "UNLIMITED"},
    {0, "NC_SIZEHINT_DEFAULT", "SIZEHINT_DEFAULT"},
    {2, "NC_VERBOSE", "VERBOSE"},
    NETCDFLIB_ERROR(NC_EHDFERR),
    NETCDFLIB_ERROR(NC_ECANTREAD),
    NETCDFLIB_ERROR(NC_ECANTWRITE),
    NETCDFLIB_ERROR(NC_ECANTCREATE),
    NETCDFLIB_ERROR(NC_EFILEMETA),
    NETCDFLIB_ERROR(NC_EATTMETA),
    NETCDFLIB_ERROR(NC_EDIMMETA),
    NETCDFLIB_ERROR(NC_EVARMETA),
    NETCDFLIB_ERROR(NC_ENOCOMPOUND),
    NETCDFLIB_ERROR(NC_EATTEXISTS),
    NETCDFLIB_ERROR(NC_ENOTNC4),
    NETCDFLIB_ERROR(NC_ESTRICTNC3),
    NETCDFLIB_ERROR(NC_ENOTNC3),
    NETCDFLIB_ERROR(NC_ENOPAR),
    NETCDFLIB_ERROR(NC_EPARINIT),
    NETCDFLIB_ERROR(NC_EBADGRPID),
    NETCDFLIB_ERROR(NC_EBADTYPID),
    NETCDFLIB_ERROR(NC_ETYPDEFINED),
    NETCDFLIB_ERROR(NC_EBADFIELD),
    NETCDFLIB_ERROR(NC_EBADCLASS),
    NETCDFLIB_ERROR(NC_EMAPTYPE),
    NETCDFLIB_ERROR(NC_ELATEFILL),
    NETCDFLIB_ERROR(NC_ELATEDEF),
    NETCDFLIB_ERROR(NC_EDIMSCALE),
    NETCDFLIB_ERROR(NC_ENOGRP),
    NETCDFLIB_ERROR(NC_ESTORAGE),
    NETCDFLIB_ERROR(NC_EBADCHUNK),
    {3, "NC_FORMAT_NETCDF4", "FORMAT_NETCDF4"},
    {4, "NC_FORMAT_NETCDF4_CLASSIC", "FORMAT_NETCDF4_CLASSIC"},
    {0, "NC_CHUNKED", "CHUNKED"},
    {1, "NC_CONTIGUOUS", "CONTIGUOUS"},
    {0, "NC_NOCHECKSUM", "NOCHECKSUM"},
    {1, "NC_FLETCHER32", "FLETCHER32"},
}};

struct FillConstant {
  std::string_view shortName;
  qvArrayPtr (*make)();
};

// netCDF-C's default fill values, each in the host class of its type.
constexpr std::array<FillConstant, 12> kFillConstants = {{
    {"FILL_BYTE", [] { return makeScalarOf<std::int8_t>(qvINT8_CLASS, NC_FILL_BYTE); }},
    {"FILL_UBYTE", [] { return makeScalarOf<std::uint8_t>(qvUINT8_CLASS, NC_FILL_UBYTE); }},
    {"FILL_CHAR",
     [] { return makeScalarOf<char16_t>(qvCHAR_CLASS, static_cast<char16_t>(NC_FILL_CHAR)); }},
    {"FILL_SHORT", [] { return makeScalarOf<std::int16_t>(qvINT16_CLASS, NC_FILL_SHORT); }},
    {"FILL_USHORT",
     [] { return makeScalarOf<std::uint16_t>(qvUINT16_CLASS, NC_FILL_USHORT); }},
    {"FILL_INT", [] { return makeScalarOf<std::int32_t>(qvINT32_CLASS, NC_FILL_INT); }},
    {"FILL_UINT", [] { return makeScalarOf<std::uint32_t>(qvUINT32_CLASS, NC_FILL_UINT); }},
    {"FILL_INT64", [] { return makeScalarOf<std::int64_t>(qvINT64_CLASS, NC_FILL_INT64); }},
    {"FILL_UINT64",
     [] { return makeScalarOf<std::uint64_t>(qvUINT64_CLASS, NC_FILL_UINT64); }},
    {"FILL_FLOAT", [] { return makeScalarOf<float>(qvSINGLE_CLASS, NC_FILL_FLOAT); }},
    {"FILL_DOUBLE", [] { return makeScalarOf<double>(qvDOUBLE_CLASS, NC_FILL_DOUBLE); }},
    {"FILL_STRING", [] { return createStringArray(utf8_to_ustring(NC_FILL_STRING)); }},
}};

// Upper case and at most one "NC_" prefix off; "NC_" alone stays as it is.
std::string shortNameOf(std::string text) {
  constexpr std::string_view kPrefix = "NC_";
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  });
  if (text.size() > kPrefix.size() && text.starts_with(kPrefix)) {
    text.erase(0, kPrefix.size());
  }
  return text;
}

qvArrayPtr constantValue(const std::string& shortName) {
  const auto fill = std::find_if(kFillConstants.begin(), kFillConstants.end(),
                                 [&](const FillConstant& f) { return f.shortName == shortName; });
  if (fill != kFillConstants.end()) {
    return fill->make();
  }
  const auto row = std::find_if(kConstants.begin(), kConstants.end(),
                                [&](const NamedConstant& c) { return shortName == c.shortName; });
  if (row == kConstants.end()) {
    qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedCharParameter(shortName));
  }
  return makeDoubleScalar(row->value);
}

}  // namespace

const char* publishedErrorName(int status) noexcept {
  for (const NamedConstant& c : kConstants) {
    const std::string_view name = c.longName;
    if (c.value == status && (name.starts_with("NC_E") || name == "NC2_ERR")) return c.longName;
  }
  return nullptr;
}

void handleParameter(int /*nlhs*/, qvArrayPtr* plhs, int /*nInputs*/, const qvArray* const* inputs,
                     const OperationRow& /*row*/) {
  plhs[0] = constantValue(shortNameOf(getCharText(inputs[0], "parameter")));
}

void handleGetConstantNames(int /*nlhs*/, qvArrayPtr* plhs, int /*nInputs*/,
                            const qvArray* const* /*inputs*/, const OperationRow& /*row*/) {
  std::array<const char*, kConstants.size()> names{};
  std::ranges::transform(kConstants, names.begin(), &NamedConstant::longName);
  plhs[0] = makeTextColumn(names);
}
