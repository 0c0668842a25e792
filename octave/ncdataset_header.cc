// __ncdataset_header__: the header of an open netCDF group as CDL, in the form ncdump -h
// prints it. Compiled because a header of thousands of attributes is thousands of
// inquiries, which cost far more one interpreted call at a time.
#include <netcdf.h>
#include <octave/oct.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

void check(int status, const char* what) {
  if (status != NC_NOERR)
    error_with_id("ncdataset:libraryFailure", "ncdataset: %s: %s", what, nc_strerror(status));
}

std::string name_of(int status, const char* buffer, const char* what) {
  check(status, what);
  return buffer;
}

// Names as CDL writes them: characters with a meaning in CDL are escaped.
std::string cdl_name(const std::string& name) {
  std::string out;
  for (std::size_t k = 0; k < name.size(); ++k) {
    const unsigned char c = static_cast<unsigned char>(name[k]);
    const bool plain = c >= 0x80 || std::isalnum(c) || c == '_' || c == '.' || c == '@' ||
                       c == '+' || (c == '-' && k > 0);
    if (!plain || (k == 0 && std::isdigit(c))) out += '\\';
    out += static_cast<char>(c);
  }
  return out;
}

std::string quoted(const char* text, std::size_t len) {
  std::string out = "\"";
  for (std::size_t k = 0; k < len; ++k) {
    const unsigned char c = static_cast<unsigned char>(text[k]);
    switch (c) {
      case '\\': out += "\\\\"; break;
      case '"': out += "\\\""; break;
      case '\n': out += "\\n"; break;
      case '\t': out += "\\t"; break;
      case '\r': out += "\\r"; break;
      case '\b': out += "\\b"; break;
      case '\f': out += "\\f"; break;
      case '\v': out += "\\v"; break;
      case '\0': out += "\\000"; break;
      default:
        if (c < 0x20 || c == 0x7f) {
          char octal[8];
          std::snprintf(octal, sizeof octal, "\\%03o", c);
          out += octal;
        } else {
          out += static_cast<char>(c);
        }
    }
  }
  return out + "\"";
}

// A floating-point constant: %#.<digits>g without the mantissa's trailing zeros.
std::string real(double x, int digits, const char* suffix) {
  if (std::isnan(x)) return std::string("NaN") + suffix;
  if (std::isinf(x)) return std::string(x < 0 ? "-Infinity" : "Infinity") + suffix;
  char buf[64];
  std::snprintf(buf, sizeof buf, "%#.*g", digits, x);
  std::string s = buf;
  const std::size_t e = s.find('e');
  std::string mantissa = s.substr(0, e), exponent = e == std::string::npos ? "" : s.substr(e);
  const std::size_t last = mantissa.find_last_not_of('0');
  mantissa.erase(last + 1);
  return mantissa + exponent + suffix;
}

template <typename T>
void integers(std::string& out, const std::vector<char>& raw, std::size_t n, const char* fmt) {
  const T* v = reinterpret_cast<const T*>(raw.data());
  char buf[48];
  for (std::size_t k = 0; k < n; ++k) {
    if (k) out += ", ";
    std::snprintf(buf, sizeof buf, fmt, v[k]);
    out += buf;
  }
}

const char* atomic_name(nc_type t) {
  static const char* names[] = {"", "byte", "char", "short", "int", "float", "double",
                                "ubyte", "ushort", "uint", "int64", "uint64", "string"};
  return t >= NC_BYTE && t <= NC_STRING ? names[t] : nullptr;
}

std::string type_name(int ncid, nc_type t) {
  if (const char* s = atomic_name(t)) return s;
  char name[NC_MAX_NAME + 1];
  return cdl_name(name_of(nc_inq_type(ncid, t, name, nullptr), name, "type name"));
}

// An enum value stored in the bytes at P, of integer type BASE.
long long enum_value(nc_type base, const void* p) {
  switch (base) {
    case NC_BYTE: return *static_cast<const signed char*>(p);
    case NC_UBYTE: return *static_cast<const unsigned char*>(p);
    case NC_SHORT: return *static_cast<const short*>(p);
    case NC_USHORT: return *static_cast<const unsigned short*>(p);
    case NC_INT: return *static_cast<const int*>(p);
    case NC_UINT: return *static_cast<const unsigned int*>(p);
    default: return *static_cast<const long long*>(p);  // int64, uint64 (bits)
  }
}

std::string enum_number(nc_type base, const void* p) {
  if (base == NC_UINT64) return std::to_string(*static_cast<const unsigned long long*>(p));
  return std::to_string(enum_value(base, p));
}

// The member of enum TYPE whose value is in the bytes at VALUE.
std::string enum_member(int ncid, nc_type type, const void* value) {
  nc_type base;
  check(nc_inq_enum(ncid, type, nullptr, &base, nullptr, nullptr), "enum");
  char name[NC_MAX_NAME + 1];
  check(nc_inq_enum_ident(ncid, type, enum_value(base, value), name), "enum member");
  return cdl_name(name);
}

std::string attribute_values(int ncid, int varid, const char* att, nc_type type, size_t len) {
  std::string out;
  if (type == NC_CHAR) {
    std::vector<char> text(len + 1);
    check(nc_get_att_text(ncid, varid, att, text.data()), att);
    while (len > 0 && text[len - 1] == '\0') --len;  // as ncdump: trailing NULs are padding
    return quoted(text.data(), len);
  }
  if (type == NC_STRING) {
    // The strings netCDF-C allocates are freed however this scope is left.
    struct Strings {
      std::vector<char*> p;
      ~Strings() { nc_free_string(p.size(), p.data()); }
    } strings{std::vector<char*>(len, nullptr)};
    check(nc_get_att_string(ncid, varid, att, strings.p.data()), att);
    for (size_t k = 0; k < len; ++k) {
      if (k) out += ", ";
      out += strings.p[k] ? quoted(strings.p[k], std::strlen(strings.p[k])) : "NIL";
    }
    return out;
  }
  size_t size = 0;
  int cls = 0;
  if (type > NC_STRING) {
    check(nc_inq_user_type(ncid, type, nullptr, &size, nullptr, nullptr, &cls), att);
    if (cls != NC_ENUM) return "/* values of a " + type_name(ncid, type) + " */";
  } else {
    check(nc_inq_type(ncid, type, nullptr, &size), att);
  }
  std::vector<char> raw(size * len + 1);
  check(nc_get_att(ncid, varid, att, raw.data()), att);
  switch (type) {
    case NC_BYTE: integers<signed char>(out, raw, len, "%hhdb"); break;
    case NC_SHORT: integers<short>(out, raw, len, "%hds"); break;
    case NC_INT: integers<int>(out, raw, len, "%d"); break;
    case NC_UBYTE: integers<unsigned char>(out, raw, len, "%hhuUB"); break;
    case NC_USHORT: integers<unsigned short>(out, raw, len, "%huUS"); break;
    case NC_UINT: integers<unsigned int>(out, raw, len, "%uU"); break;
    case NC_INT64: integers<long long>(out, raw, len, "%lldLL"); break;
    case NC_UINT64: integers<unsigned long long>(out, raw, len, "%lluULL"); break;
    case NC_FLOAT:
    case NC_DOUBLE:
      for (size_t k = 0; k < len; ++k) {
        if (k) out += ", ";
        out += type == NC_FLOAT ? real(reinterpret_cast<const float*>(raw.data())[k], 7, "f")
                                : real(reinterpret_cast<const double*>(raw.data())[k], 15, "");
      }
      break;
    default:  // an enum
      for (size_t k = 0; k < len; ++k) {
        if (k) out += ", ";
        out += enum_member(ncid, type, raw.data() + k * size);
      }
  }
  return out;
}

void attributes(std::string& out, int ncid, int varid, const std::string& owner, int natts,
                const std::string& ind) {
  char att[NC_MAX_NAME + 1];
  for (int k = 0; k < natts; ++k) {
    check(nc_inq_attname(ncid, varid, k, att), "attribute name");
    nc_type type;
    size_t len;
    check(nc_inq_att(ncid, varid, att, &type, &len), att);
    out += ind + "\t\t";
    if (type == NC_STRING || type > NC_STRING) out += type_name(ncid, type) + " ";
    out += owner + ":" + cdl_name(att) + " = " + attribute_values(ncid, varid, att, type, len) +
           " ;\n";
  }
}

void types(std::string& out, int ncid, const std::string& ind) {
  int ntypes = 0;
  check(nc_inq_typeids(ncid, &ntypes, nullptr), "types");
  if (ntypes == 0) return;
  std::vector<int> ids(ntypes);
  check(nc_inq_typeids(ncid, &ntypes, ids.data()), "types");
  out += ind + "types:\n";
  for (int t : ids) {
    char name[NC_MAX_NAME + 1];
    size_t size, nfields;
    nc_type base;
    int cls;
    check(nc_inq_user_type(ncid, t, name, &size, &base, &nfields, &cls), "user type");
    const std::string tname = cdl_name(name);
    switch (cls) {
      case NC_VLEN:
        out += ind + "  " + type_name(ncid, base) + "(*) " + tname + " ;\n";
        break;
      case NC_OPAQUE:
        out += ind + "  opaque(" + std::to_string(size) + ") " + tname + " ;\n";
        break;
      case NC_ENUM: {
        out += ind + "  " + type_name(ncid, base) + " enum " + tname + " {";
        long long value = 0;
        for (size_t m = 0; m < nfields; ++m) {
          char member[NC_MAX_NAME + 1];
          check(nc_inq_enum_member(ncid, t, static_cast<int>(m), member, &value), "enum");
          out += (m ? ", " : "") + cdl_name(member) + " = " + enum_number(base, &value);
        }
        out += "} ;\n";
        break;
      }
      default: {
        out += ind + "  compound " + tname + " {\n";
        for (size_t f = 0; f < nfields; ++f) {
          char field[NC_MAX_NAME + 1];
          nc_type ftype;
          int rank;
          int dims[NC_MAX_VAR_DIMS];
          check(nc_inq_compound_field(ncid, t, static_cast<int>(f), field, nullptr, &ftype,
                                      &rank, dims), "compound field");
          out += ind + "    " + type_name(ncid, ftype) + " " + cdl_name(field);
          for (int d = 0; d < rank; ++d)
            out += (d ? ", " : "(") + std::to_string(dims[d]) + (d == rank - 1 ? ")" : "");
          out += " ;\n";
        }
        out += ind + "  }; // " + tname + "\n";
      }
    }
  }
}

void group(std::string& out, int ncid, const std::string& ind, bool root) {
  int format = 0;
  check(nc_inq_format(ncid, &format), "format");
  const bool groups = format == NC_FORMAT_NETCDF4;
  if (groups) types(out, ncid, ind);

  int ndims = 0;
  check(nc_inq_dimids(ncid, &ndims, nullptr, 0), "dimensions");
  std::vector<int> dimids(ndims);
  check(nc_inq_dimids(ncid, &ndims, dimids.data(), 0), "dimensions");
  int nunlim = 0;
  check(nc_inq_unlimdims(ncid, &nunlim, nullptr), "unlimited dimensions");
  std::vector<int> unlim(nunlim);
  check(nc_inq_unlimdims(ncid, &nunlim, unlim.data()), "unlimited dimensions");
  char name[NC_MAX_NAME + 1];
  if (ndims) out += ind + "dimensions:\n";
  for (int d : dimids) {
    size_t len;
    check(nc_inq_dim(ncid, d, name, &len), "dimension");
    out += ind + "\t" + cdl_name(name) + " = ";
    if (std::find(unlim.begin(), unlim.end(), d) != unlim.end())
      out += "UNLIMITED ; // (" + std::to_string(len) + " currently)\n";
    else
      out += std::to_string(len) + " ;\n";
  }

  int nvars = 0;
  check(nc_inq_varids(ncid, &nvars, nullptr), "variables");
  std::vector<int> varids(nvars);
  check(nc_inq_varids(ncid, &nvars, varids.data()), "variables");
  if (nvars) out += ind + "variables:\n";
  for (int v : varids) {
    nc_type type;
    int rank, natts;
    int vdims[NC_MAX_VAR_DIMS];
    check(nc_inq_var(ncid, v, name, &type, &rank, vdims, &natts), "variable");
    const std::string vname = cdl_name(name);
    out += ind + "\t" + type_name(ncid, type) + " " + vname;
    for (int d = 0; d < rank; ++d) {
      char dname[NC_MAX_NAME + 1];
      check(nc_inq_dimname(ncid, vdims[d], dname), "dimension name");
      out += (d ? ", " : "(") + cdl_name(dname);
    }
    out += rank ? ") ;\n" : " ;\n";
    attributes(out, ncid, v, vname, natts, ind);
  }

  int ngatts = 0;
  check(nc_inq_natts(ncid, &ngatts), "global attributes");
  if (ngatts) {
    out += "\n" + ind + (root ? "// global attributes:\n" : "// group attributes:\n");
    attributes(out, ncid, NC_GLOBAL, "", ngatts, ind);
  }

  if (!groups) return;
  int ngrps = 0;
  check(nc_inq_grps(ncid, &ngrps, nullptr), "groups");
  std::vector<int> grps(ngrps);
  check(nc_inq_grps(ncid, &ngrps, grps.data()), "groups");
  for (int g : grps) {
    const std::string gname = cdl_name(name_of(nc_inq_grpname(g, name), name, "group name"));
    out += "\n" + ind + "group: " + gname + " {\n";
    group(out, g, ind + "  ", false);
    out += ind + "  } // group " + gname + "\n";
  }
}

}  // namespace

// clang-format off
DEFUN_DLD(__ncdataset_header__, args, ,
R"(-- TEXT = __ncdataset_header__ (NCID, NAME, ROOT)

Internal to ncdataset: the header of group NCID of an open file as ncdump -h
prints it, under the name NAME: "netcdf NAME {" when ROOT is true, else the
group's own "group: NAME {" and "} // group NAME".)")
// clang-format on
{
  if (args.length() != 3 || !args(1).is_string())
    error_with_id("ncdataset:badArgument", "__ncdataset_header__: wrong arguments");
  const int ncid = args(0).int_value();
  const std::string name = cdl_name(args(1).string_value());
  const bool root = args(2).bool_value();
  std::string out = root ? "netcdf " + name + " {\n" : "group: " + name + " {\n";
  group(out, ncid, "", root);
  out += root ? "}\n" : "} // group " + name + "\n";
  return octave_value(out);
}
