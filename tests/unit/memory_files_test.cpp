// Files held in memory: opened from bytes, created in memory, closed into bytes, and
// closed at unload.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "gateway/registry.hpp"
#include "test_support.hpp"

namespace {

using test::args;
using test::call;
using test::call1;
using test::number;
using test::valuesOf;

using Bytes = std::vector<std::uint8_t>;

std::string statusName(const test::CaughtError& e) { return std::get<std::string>(e.args[1]); }

qvArrayPtr byteArray(const Bytes& bytes) {
  return test::array<std::uint8_t>(bytes, {bytes.size(), 1});
}
Bytes readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}
void writeFile(const std::string& path, const Bytes& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

const std::vector<std::int32_t> kValues{3, 1, 4, 1, 5};

// Defines "v" (x = 5, int) in an open file and writes kValues into it.
void fill(const qvArrayPtr& id) {
  const double v = number(call1("defVar", {id, "v", NC_INT, call1("defDim", {id, "x", 5})}));
  call("endDef", {id});
  call("putVarInt", {id, v, test::array<std::int32_t>(kValues)});
}
std::vector<std::int32_t> values(const qvArrayPtr& id) {
  return valuesOf<std::int32_t>(call1("getVarInt", {id, call1("inqVarID", {id, "v"})}));
}

class MemoryFiles : public ::testing::TestWithParam<const char*> {
 protected:
  // The bytes of a file written to disk in the format of the test.
  Bytes diskFileBytes() {
    const qvArrayPtr id = call1("create", {dir_.file("disk.nc"), GetParam()});
    fill(id);
    call("close", {id});
    return readFile(dir_.file("disk.nc"));
  }
  test::ScratchDir dir_;
};

TEST_P(MemoryFiles, OpenFromBytesReadsAndClosesEitherWay) {
  const Bytes bytes = diskFileBytes();
  qvArrayPtr id = call1("openMem", {"mem.nc", "nowrite", byteArray(bytes)});
  EXPECT_EQ(kValues, values(id));
  call("close", {id});
  id = call1("openMem", {"mem.nc", "nowrite", byteArray(bytes)});
  const qvArrayPtr back = call1("closeMem", {id});
  EXPECT_EQ((test::Dims{bytes.size(), 1}), test::dimsOf(back));
  EXPECT_EQ(bytes, valuesOf<std::uint8_t>(back));
  EXPECT_FALSE(OpenFileRegistry::contains(static_cast<int>(number(id))));
  EXPECT_EQ("NC_EBADID", statusName(*test::catchMsgId([&] { call("closeMem", {id}); })));
}

TEST_P(MemoryFiles, WritableAndCreatedFilesCloseIntoBytesOthersRead) {
  qvArrayPtr id = call1("openMem", {"mem.nc", "write", byteArray(diskFileBytes())});
  call("putVar1Int", {id, 0, 0, test::scalar<std::int32_t>(9)});
  writeFile(dir_.file("changed.nc"), valuesOf<std::uint8_t>(call1("closeMem", {id})));
  const double mode = std::string(GetParam()) == "netcdf4" ? NC_NETCDF4 : NC_CLOBBER;
  const qvArrayPtr created = call1("createMem", {"new.nc", mode, 0});
  fill(created);
  writeFile(dir_.file("created.nc"), valuesOf<std::uint8_t>(call1("closeMem", {created})));
  id = call1("open", {dir_.file("changed.nc"), "nowrite"});
  EXPECT_EQ((std::vector<std::int32_t>{9, 1, 4, 1, 5}), values(id));
  call("close", {id});
  id = call1("open", {dir_.file("created.nc"), "nowrite"});
  EXPECT_EQ(kValues, values(id));
  call("close", {id});
}

INSTANTIATE_TEST_SUITE_P(Formats, MemoryFiles, ::testing::Values("clobber", "netcdf4"));

// netCDF-C reads a first block of a classic file that a header-only file is shorter than,
// which locked memory cannot supply.
TEST(MemoryFileShortClassic, HeaderOnlyFileOpensReadOnly) {
  test::ScratchDir dir;
  const qvArrayPtr disk = call1("create", {dir.file("short.nc"), "clobber"});
  call("defDim", {disk, "q", 6});
  call("close", {disk});
  const Bytes bytes = readFile(dir.file("short.nc"));
  ASSERT_LT(bytes.size(), 100u);
  const qvArrayPtr id = call1("openMem", {"short.nc", "nowrite", byteArray(bytes)});
  EXPECT_EQ(6, number(call("inqDim", {id, 0})[1]));
  EXPECT_EQ(bytes, valuesOf<std::uint8_t>(call1("closeMem", {id})));
}

TEST(MemoryFileErrors, RefusedBytesModesAndIds) {
  const Bytes garbage(200, 'x');
  for (const char* mode : {"nowrite", "write"}) {
    const auto e = test::catchMsgId([&] { call("openMem", {"g.nc", mode, byteArray(garbage)}); });
    EXPECT_EQ("NC_ENOTNC", statusName(*e)) << mode;
  }
  EXPECT_EQ("NC_EINVAL", statusName(*test::catchMsgId([&] {
              call("openMem", {"e.nc", "nowrite", test::zeros(qvUINT8_CLASS, {0, 0})});
            })));
  EXPECT_MSGID(call("openMem", {"d.nc", "nowrite", test::array<double>({1, 2, 3, 4})}),
               "QUARNA:imagesci:netcdf:argumentNotOfKind", args("bytes", "a real uint8 array"));
  // netCDF-C 4.9.0 crashes creating an unregistered user-defined format in memory too.
  EXPECT_EQ("NC_ENOTBUILT", statusName(*test::catchMsgId([&] {
              call("createMem", {"u.nc", NC_UDF0, 0});
            })));
  EXPECT_EQ("NC_EBADID", statusName(*test::catchMsgId([&] { call("closeMem", {12345678}); })));

  // A disk file: nc_close_memio would close it and answer success without bytes.
  test::ScratchDir dir;
  const qvArrayPtr id = call1("create", {dir.file("disk.nc"), "clobber"});
  EXPECT_EQ("-135", statusName(*test::catchMsgId([&] { call("closeMem", {id}); })));
  call("close", {id});
}

TEST(MemoryFileUnload, InMemoryFilesCloseAndReleaseTheirMemory) {
  test::ScratchDir dir;
  const qvArrayPtr disk = call1("create", {dir.file("disk.nc"), "netcdf4"});
  fill(disk);
  call("close", {disk});
  const Bytes bytes = readFile(dir.file("disk.nc"));
  std::vector<int> ids;
  for (const auto& id : {call1("openMem", {"r.nc", "nowrite", byteArray(bytes)}),
                         call1("openMem", {"w.nc", "write", byteArray(bytes)}),
                         call1("createMem", {"c.nc", NC_NETCDF4, 0}),
                         call1("createMem", {"c3.nc", NC_CLOBBER, 0})}) {
    ids.push_back(static_cast<int>(number(id)));
  }
  const qvWarningHandler previous =
      qvSetWarningHandler([](const resource_core::BaseMsgID&, const std::u16string&) {});
  OpenFileRegistry::closeAll();
  qvSetWarningHandler(previous);
  for (const int id : ids) {
    int format = 0;
    EXPECT_EQ(NC_EBADID, nc_inq_format(id, &format)) << id;
    OpenFileRegistry::remove(id);
  }
}

}  // namespace
