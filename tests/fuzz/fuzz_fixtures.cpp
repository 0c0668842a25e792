// Fixture files the fuzzer opens by name: one small file per netCDF format holding a
// variable of every type, attributes, groups and variable-length types, and a few broken
// files. Written once per process with netCDF-C itself.
#include <netcdf.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "fuzz.hpp"

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

// Adds variable-length types nested and of text, strings, chunked and compressed storage
// and the unsigned and 64-bit types, which ncgen cannot write in this order (nor text of
// variable length at all).
void writeNetcdf4(const std::string& path) {
  int nc = -1;
  must(nc_open(path.c_str(), NC_WRITE, &nc), path.c_str());
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

  int nested[] = {1, 2, 3};
  nc_vlen_t va[] = {{3, nested}, {0, nullptr}};
  must(nc_put_att(nc, NC_GLOBAL, "va", vli, 2, va), "va");
  must(nc_enddef(nc), "enddef 2");

  must(nc_put_var(nc, s, std::array<const char*, 4>{"a", "", "long string", "\xff\xfe"}.data()),
       "s data");
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
  must(nc_put_var(nc, ch, std::array<float, 12>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}.data()),
       "ch data");
  must(nc_put_var(nc, us, std::array<unsigned short, 4>{0, 1, 2, 65535}.data()), "us data");
  must(nc_put_var(nc, ui, std::array<unsigned, 4>{0, 1, 2, 4294967295u}.data()), "ui data");
  must(nc_put_var(nc, ub, std::array<unsigned char, 4>{0, 1, 2, 255}.data()), "ub data");
  must(nc_put_var(nc, l, std::array<long long, 4>{0, -1, 1LL << 40, -(1LL << 62)}.data()),
       "l data");
  must(nc_close(nc), "close");
}

}  // namespace

void writeFixtures(const std::filesystem::path& dir) {
  std::filesystem::create_directories(dir);
  // The classic content from its text form; the netCDF-4 one adds to it.
  const std::array<std::array<const char*, 3>, 5> fromText = {
      {{"classic", "classic", "classic"},
       {"offset", "64-bit offset", "classic"},
       {"cdf5", "cdf5", "cdf5"},
       {"nc4classic", "netCDF-4 classic model", "classic"},
       {"nc4", "nc4", "nc4"}}};
  for (const auto& [name, kind, text] : fromText) {
    const std::string command = std::string(NETCDFLIB_FUZZ_NCGEN) + " -k '" + kind + "' -o '" +
                                (dir / name).string() + ".nc' " + NETCDFLIB_FUZZ_FIXTURES + "/" +
                                text + ".cdl";
    must(std::system(command.c_str()) == 0 ? NC_NOERR : NC_EINVAL, command.c_str());
  }
  writeNetcdf4((dir / "nc4.nc").string());
  std::ofstream(dir / "empty.nc").flush();
  // A classic magic number followed by a header that claims far more than it holds (65536
  // dimensions: netCDF-C sizes its tables from the claim, and larger claims are the
  // hostile-file tests' business, not a fuzzing process's memory).
  const char garbage[] = {'C', 'D', 'F', 1, 0, 0, 0, 2, 0, 0, 0, 0x0a, 0, 1, 0, 0};
  std::ofstream(dir / "garbage.nc", std::ios::binary).write(garbage, sizeof garbage);
  std::filesystem::copy_file(dir / "nc4.nc", dir / "truncated.nc");
  std::filesystem::resize_file(dir / "truncated.nc",
                               std::filesystem::file_size(dir / "nc4.nc") / 2);
}

}  // namespace fuzz
