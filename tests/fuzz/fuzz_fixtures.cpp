// Fixture files the fuzzer opens by name: one small file per netCDF format holding a
// variable of every type, attributes, groups and variable-length types, and a few broken
// files. Written once per process with netCDF-C itself.
#include <netcdf.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "fuzz_workspace.hpp"

namespace fuzz {

namespace {

void must(int status, const char* what) {
  if (status != NC_NOERR) {
    std::fprintf(stderr, "netcdflib_fuzzer: fixture %s: %s\n", what, nc_strerror(status));
    std::abort();
  }
}

int defineVar(int nc, const char* name, nc_type type, std::initializer_list<int> dims) {
  int varid = -1;
  const std::vector<int> ids(dims);
  must(nc_def_var(nc, name, type, static_cast<int>(ids.size()), ids.data(), &varid), name);
  return varid;
}

// Dimensions x = 4, y = 3 and an unlimited t; variables of the classic types; attributes.
void writeClassicContent(int nc, bool extendedTypes) {
  int x = -1, y = -1, t = -1;
  must(nc_def_dim(nc, "x", 4, &x), "x");
  must(nc_def_dim(nc, "y", 3, &y), "y");
  must(nc_def_dim(nc, "t", NC_UNLIMITED, &t), "t");
  const int d = defineVar(nc, "d", NC_DOUBLE, {y, x});
  const int i = defineVar(nc, "i", NC_INT, {x});
  const int c = defineVar(nc, "c", NC_CHAR, {y, x});
  const int u = defineVar(nc, "u", NC_SHORT, {t, x});
  const int b = defineVar(nc, "b", NC_BYTE, {x});
  const int f = defineVar(nc, "f", NC_FLOAT, {});
  int ll = -1;
  if (extendedTypes) ll = defineVar(nc, "ll", NC_UINT64, {x});
  must(nc_put_att_text(nc, NC_GLOBAL, "title", 7, "fixture"), "title");
  const std::array<double, 3> nums = {1.5, -2.0, 1e300};
  must(nc_put_att_double(nc, NC_GLOBAL, "nums", NC_DOUBLE, 3, nums.data()), "nums");
  const std::array<int, 2> ai = {1, 2};
  must(nc_put_att_int(nc, NC_GLOBAL, "ai", NC_INT, 2, ai.data()), "ai");
  must(nc_put_att_text(nc, d, "units", 1, "m"), "units");
  const short fill = -7;
  must(nc_put_att_short(nc, u, "_FillValue", NC_SHORT, 1, &fill), "_FillValue");
  must(nc_enddef(nc), "enddef");

  const std::array<double, 12> dv = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
  must(nc_put_var_double(nc, d, dv.data()), "d data");
  const std::array<int, 4> iv = {-1, 0, 1, 2147483647};
  must(nc_put_var_int(nc, i, iv.data()), "i data");
  must(nc_put_var_text(nc, c, "abcdefghij\xe9\x7f"), "c data");
  const std::array<short, 8> uv = {1, 2, 3, 4, 5, 6, 7, 8};
  const std::size_t start[] = {0, 0}, count[] = {2, 4};
  must(nc_put_vara_short(nc, u, start, count, uv.data()), "u data");
  const std::array<signed char, 4> bv = {-128, 0, 1, 127};
  must(nc_put_var_schar(nc, b, bv.data()), "b data");
  const float fv = 3.25f;
  must(nc_put_var_float(nc, f, &fv), "f data");
  if (extendedTypes) {
    const std::array<unsigned long long, 4> lv = {0, 1, 1ULL << 63, ~0ULL};
    must(nc_put_var_ulonglong(nc, ll, lv.data()), "ll data");
  }
}

void writeClassic(const std::string& path, int mode) {
  int nc = -1;
  must(nc_create(path.c_str(), NC_CLOBBER | mode, &nc), path.c_str());
  writeClassicContent(nc, (mode & (NC_64BIT_DATA | NC_NETCDF4)) != 0 && !(mode & NC_CLASSIC_MODEL));
  must(nc_close(nc), "close");
}

// Variable-length types nested and of text, strings, chunked and compressed storage,
// attributes of every type and a group tree.
void writeNetcdf4(const std::string& path) {
  int nc = -1;
  must(nc_create(path.c_str(), NC_CLOBBER | NC_NETCDF4, &nc), path.c_str());
  writeClassicContent(nc, true);
  must(nc_redef(nc), "redef");
  int x = -1;
  must(nc_inq_dimid(nc, "x", &x), "x");
  nc_type vli = NC_NAT, vlv = NC_NAT, vls = NC_NAT, vlc = NC_NAT;
  must(nc_def_vlen(nc, "vli", NC_INT, &vli), "vli");
  must(nc_def_vlen(nc, "vlv", vli, &vlv), "vlv");
  must(nc_def_vlen(nc, "vls", NC_STRING, &vls), "vls");
  must(nc_def_vlen(nc, "vlc", NC_CHAR, &vlc), "vlc");
  const int s = defineVar(nc, "s", NC_STRING, {x});
  const int vl = defineVar(nc, "vl", vli, {x});
  const int vv = defineVar(nc, "vv", vlv, {x});
  const int vs = defineVar(nc, "vs", vls, {x});
  const int vc = defineVar(nc, "vc", vlc, {x});
  int y = -1;
  must(nc_inq_dimid(nc, "y", &y), "y");
  const int ch = defineVar(nc, "ch", NC_FLOAT, {y, x});
  const std::size_t chunks[] = {3, 2};
  must(nc_def_var_chunking(nc, ch, NC_CHUNKED, chunks), "chunking");
  must(nc_def_var_deflate(nc, ch, 1, 1, 1), "deflate");
  must(nc_def_var_fletcher32(nc, ch, NC_FLETCHER32), "fletcher32");
  const int us = defineVar(nc, "us", NC_USHORT, {x});
  const int ui = defineVar(nc, "ui", NC_UINT, {x});
  const int ub = defineVar(nc, "ub", NC_UBYTE, {x});
  const int l = defineVar(nc, "l", NC_INT64, {x});

  const long long al[] = {-1, 1LL << 62};
  must(nc_put_att_longlong(nc, NC_GLOBAL, "al", NC_INT64, 2, al), "al");
  const unsigned char aub[] = {0, 255};
  must(nc_put_att_uchar(nc, NC_GLOBAL, "aub", NC_UBYTE, 2, aub), "aub");
  const char* astr[] = {"one", "", "\xc3\xa9t\xc3\xa9"};
  must(nc_put_att_string(nc, NC_GLOBAL, "sa", 3, astr), "sa");
  int nested[] = {1, 2, 3};
  nc_vlen_t va[] = {{3, nested}, {0, nullptr}};
  must(nc_put_att(nc, NC_GLOBAL, "va", vli, 2, va), "va");
  must(nc_enddef(nc), "enddef 2");

  const char* sv[] = {"a", "", "long string", "\xff\xfe"};
  must(nc_put_var_string(nc, s, sv), "s data");
  int e1[] = {1}, e2[] = {2, 3};
  nc_vlen_t vlv_data[] = {{1, e1}, {2, e2}, {0, nullptr}, {1, e1}};
  must(nc_put_var(nc, vl, vlv_data), "vl data");
  nc_vlen_t outer[] = {{2, vlv_data}, {0, nullptr}, {1, vlv_data + 1}, {1, vlv_data + 2}};
  must(nc_put_var(nc, vv, outer), "vv data");
  const char* words[] = {"x", "yz"};
  nc_vlen_t vs_data[] = {{2, words}, {0, nullptr}, {1, words}, {1, words + 1}};
  must(nc_put_var(nc, vs, vs_data), "vs data");
  char letters[] = "abc";
  nc_vlen_t vc_data[] = {{3, letters}, {0, nullptr}, {1, letters}, {2, letters + 1}};
  must(nc_put_var(nc, vc, vc_data), "vc data");
  const std::array<float, 12> chv = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  must(nc_put_var_float(nc, ch, chv.data()), "ch data");
  const unsigned short usv[] = {0, 1, 2, 65535};
  must(nc_put_var_ushort(nc, us, usv), "us data");
  const unsigned int uiv[] = {0, 1, 2, 4294967295u};
  must(nc_put_var_uint(nc, ui, uiv), "ui data");
  const unsigned char ubv[] = {0, 1, 2, 255};
  must(nc_put_var_uchar(nc, ub, ubv), "ub data");
  const long long lv[] = {0, -1, 1LL << 40, -(1LL << 62)};
  must(nc_put_var_longlong(nc, l, lv), "l data");

  int g = -1, h = -1, z = -1, gv = -1;
  must(nc_def_grp(nc, "g", &g), "g");
  must(nc_def_grp(g, "h", &h), "h");
  must(nc_def_dim(g, "z", 2, &z), "z");
  must(nc_def_var(g, "gv", NC_INT, 1, &z, &gv), "gv");
  const int gvv[] = {5, 6};
  must(nc_put_var_int(g, gv, gvv), "gv data");
  must(nc_close(nc), "close");
}

std::vector<char> bytesOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

std::map<std::string, std::vector<char>> makeFixtures(const std::filesystem::path& dir) {
  std::filesystem::create_directories(dir);
  std::map<std::string, std::vector<char>> fixtures;
  const struct {
    const char* word;
    int mode;
  } classic[] = {{"#classic", 0},
                 {"#offset", NC_64BIT_OFFSET},
                 {"#cdf5", NC_64BIT_DATA},
                 {"#nc4classic", NC_NETCDF4 | NC_CLASSIC_MODEL}};
  for (const auto& c : classic) {
    const auto path = dir / (std::string(c.word + 1) + ".nc");
    writeClassic(path.string(), c.mode);
    fixtures[c.word] = bytesOf(path);
  }
  const auto nc4 = dir / "nc4.nc";
  writeNetcdf4(nc4.string());
  fixtures["#nc4"] = bytesOf(nc4);
  fixtures["#empty"] = {};
  // A classic magic number followed by a header that claims far more than it holds (65536
  // dimensions: netCDF-C sizes its tables from the claim, and larger claims are the
  // hostile-file tests' business, not a fuzzing process's memory).
  fixtures["#garbage"] = {'C',  'D',  'F',  '\x01', '\0', '\0',   '\0', '\x02',
                          '\0', '\0', '\0', '\x0a', '\0', '\x01', '\0', '\0'};
  std::vector<char> truncated = fixtures["#nc4"];
  truncated.resize(truncated.size() / 2);
  fixtures["#truncated"] = std::move(truncated);
  return fixtures;
}

}  // namespace fuzz
