// Fixture files the fuzzer opens by name: one small file per netCDF format holding a
// variable of every type, attributes, groups and variable-length types, and a few broken
// files. Written once per process from their text form by ncgen.
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

// ncgen cannot write variable-length text.
void writeVlenText(const std::string& path) {
  int nc = -1, vc = -1;
  must(nc_open(path.c_str(), NC_WRITE, &nc), path.c_str());
  must(nc_inq_varid(nc, "vc", &vc), "vc");
  char letters[] = "abc";
  nc_vlen_t data[] = {{3, letters}, {0, nullptr}, {1, letters}, {2, letters + 1}};
  must(nc_put_var(nc, vc, data), "vc data");
  must(nc_close(nc), "close");
}

}  // namespace

void writeFixtures(const std::filesystem::path& dir) {
  std::filesystem::create_directories(dir);
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
  writeVlenText((dir / "nc4.nc").string());
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
