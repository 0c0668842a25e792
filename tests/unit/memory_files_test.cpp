// Files held in memory beyond what tests/octave checks: writable bytes, short classic
// files, refusals. Unload with such files open is in tests/octave/unload_test.m.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "test_support.hpp"

namespace {

using test::call;
using test::call1;
using test::number;
using Bytes = std::vector<std::uint8_t>;

std::string statusOf(auto&& f) { return std::get<std::string>(test::catchMsgId(f)->args[1]); }
qvArrayPtr byteArray(const Bytes& b) { return test::array<std::uint8_t>(b, {b.size(), 1}); }

// The bytes of a file created on disk in the given format with dimension q = 6 and, when
// asked, int variable v(q).
Bytes fileBytes(const test::ScratchDir& dir, const char* mode, bool variable) {
  const qvArrayPtr id = call1("create", {dir.file("disk.nc"), mode});
  const qvArrayPtr q = call1("defDim", {id, "q", 6});
  if (variable) call("defVar", {id, "v", NC_INT, q});
  call("close", {id});
  std::ifstream in(dir.file("disk.nc"), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(MemoryFiles, WritableBytesComeBackChanged) {
  test::ScratchDir dir;
  for (const char* mode : {"clobber", "netcdf4"}) {
    qvArrayPtr id = call1("openMem", {"m.nc", "write", byteArray(fileBytes(dir, mode, true))});
    call("putVar1Int", {id, 0, 2, test::scalar<std::int32_t>(9)});
    id = call1("openMem", {"m.nc", "nowrite", call1("closeMem", {id})});
    EXPECT_EQ(9, test::valuesOf<std::int32_t>(call1("getVar1Int", {id, 0, 2}))[0]) << mode;
    call("close", {id});
  }
}

// netCDF-C reads a first block of a classic file from memory that a header-only file is
// shorter than, which memory it may not grow cannot supply.
TEST(MemoryFiles, HeaderOnlyClassicFileOpensReadOnly) {
  test::ScratchDir dir;
  const Bytes bytes = fileBytes(dir, "clobber", false);
  ASSERT_LT(bytes.size(), 100u);
  const qvArrayPtr id = call1("openMem", {"short.nc", "nowrite", byteArray(bytes)});
  EXPECT_EQ(6, number(call("inqDim", {id, 0})[1]));
  EXPECT_EQ(bytes, test::valuesOf<std::uint8_t>(call1("closeMem", {id})));
}

TEST(MemoryFiles, RefusedBytesModesAndIds) {
  for (const char* mode : {"nowrite", "write"}) {
    EXPECT_EQ("NC_ENOTNC", statusOf([&] {
                call("openMem", {"g.nc", mode, byteArray(Bytes(200, 'x'))});
              }));
  }
  EXPECT_EQ("NC_EINVAL", statusOf([] { call("openMem", {"e.nc", "nowrite", byteArray({})}); }));
  EXPECT_MSGID(call("openMem", {"d.nc", "nowrite", test::array<double>({1, 2, 3, 4})}),
               "QUARNA:imagesci:netcdf:argumentNotOfKind",
               test::args("bytes", "a real uint8 array"));
  // netCDF-C 4.9.0 crashes creating an unregistered user-defined format in memory too.
  EXPECT_EQ("NC_ENOTBUILT", statusOf([] { call("createMem", {"u.nc", NC_UDF0, 0}); }));
  EXPECT_EQ("NC_EBADID", statusOf([] { call("closeMem", {12345678}); }));
  // nc_close_memio would close a disk file and answer success with no bytes.
  test::ScratchDir dir;
  const qvArrayPtr id = call1("create", {dir.file("disk.nc"), "clobber"});
  EXPECT_EQ("-135", statusOf([&] { call("closeMem", {id}); }));
  call("close", {id});
}

}  // namespace
