// Creating, opening and controlling files, on disk and in memory, through the entry point:
// formats, refused modes, and the names and modes refused before netCDF-C sees them.
#include <fstream>

#include "test_support.hpp"

namespace {

using namespace test;

constexpr const char* kCreateErr = "fileCreateErr";

// netCDF-C 4.9.0 crashes creating a file of an unregistered user-defined format, on disk
// or in memory, and opening a path as an in-memory image. It takes names as C strings:
// anything after a NUL would be dropped, and another file or object used than the one
// named. In character data a NUL is a character.
TEST(OpenCreate, ModesThatCrashNetcdfAndNamesWithANulAreRefused) {
  const ScratchDir dir;
  const std::string path = dir.file("m.nc");
  for (const int mode : {NC_UDF0, NC_UDF1 | NC_NETCDF4, NC_UDF1 | NC_64BIT_OFFSET}) {
    EXPECT_MSGID(call("create", {path, mode}), kCreateErr);
    EXPECT_MSGID(call("pCreate", {path, mode, 0, 0}), kCreateErr);
    EXPECT_EQ("NC_ENOTBUILT", statusOf([&] { call("createMem", {path, mode, 0}); })) << mode;
  }
  call("close", {call1("create", {path, scalar<std::int32_t>(NC_NETCDF4 | NC_CLASSIC_MODEL)})});
  EXPECT_MSGID(call("create", {path, "noclobber"}), "fileOverwriteErr");
  EXPECT_MSGID(call("pCreate", {path, "noclobber", 0, 0}), kCreateErr);
  EXPECT_MSGID(call("open", {path, NC_INMEMORY}), "libraryFailure", "open", "NC_EINVAL",
               "Invalid argument");
  EXPECT_EQ("NC_EINVAL", statusOf([&] { call("pOpen", {path, NC_INMEMORY, 0}); }));
  const std::string name("d\0e", 3);
  const char* kNul = "nameContainsNul";
  EXPECT_MSGID(call("create", {dir.file(name), "clobber"}), kNul, "file");
  EXPECT_FALSE(std::filesystem::exists(dir.file("d")));
  const qvArrayPtr id = call1("create", {dir.file("n.nc"), "netcdf4"});
  EXPECT_MSGID(call("defDim", {id, name, 1}), kNul, "dimension");
  EXPECT_MSGID(call("putAttText", {id, NC_GLOBAL, name, NC_CHAR, "t"}), kNul, "attribute");
  const qvArrayPtr var = call1("defVar", {id, "c", NC_CHAR, call1("defDim", {id, "x", 1})});
  call("defVarFill", {id, var, false, std::string(1, '\0')});
  call("close", {id});
}

// The bytes of a file with int variable v(6), as a column.
qvArrayPtr fileBytes(const ScratchDir& dir, const char* mode) {
  const qvArrayPtr id = call1("create", {dir.file("disk.nc"), mode});
  call("defVar", {id, "v", NC_INT, call1("defDim", {id, "q", 6})});
  call("close", {id});
  std::ifstream in(dir.file("disk.nc"), std::ios::binary);
  const std::vector<std::uint8_t> b{std::istreambuf_iterator<char>(in), {}};
  return array(b, {b.size(), 1});
}

TEST(MemoryFiles, WritableBytesAndRefusals) {
  const ScratchDir dir;
  for (const char* mode : {"clobber", "netcdf4"}) {
    qvArrayPtr id = call1("openMem", {"m.nc", "write", fileBytes(dir, mode)});
    call("putVar1Int", {id, 0, 2, scalar<std::int32_t>(9)});
    id = call1("openMem", {"m.nc", "nowrite", call1("closeMem", {id})});
    EXPECT_EQ(9, valuesOf<std::int32_t>(call1("getVar1Int", {id, 0, 2}))[0]) << mode;
    call("close", {id});
  }
  const qvArrayPtr notNetcdf = zeros(qvUINT8_CLASS, {200, 1}), empty = zeros(qvUINT8_CLASS, {0, 1});
  EXPECT_EQ("NC_ENOTNC", statusOf([&] { call("openMem", {"g", "write", notNetcdf}); }));
  EXPECT_EQ("NC_EINVAL", statusOf([&] { call("openMem", {"e", "nowrite", empty}); }));
  EXPECT_MSGID(call("openMem", {"d.nc", "nowrite", zeros(qvDOUBLE_CLASS, {4, 1})}),
               "argumentNotOfKind", "bytes", "a real uint8 array");
  // netCDF-C frees the bytes of this failed open itself.
  const qvArrayPtr created = call1("createMem", {"c.nc", "netcdf4", 0});
  const qvArrayPtr bytes = call1("closeMem", {created});
  EXPECT_EQ("NC_ECANTWRITE", statusOf([&] { call("openMem", {"c.nc", "write", bytes}); }));
  EXPECT_EQ("NC_EBADID", statusOf([] { call("closeMem", {12345678}); }));
  // nc_close_memio would close a disk file and answer success with no bytes.
  const qvArrayPtr disk = call1("create", {dir.file("disk.nc"), "clobber"});
  EXPECT_EQ("-135", statusOf([&] { call("closeMem", {disk}); }));
  call("close", {disk});
}

}  // namespace
