// Opening, creating and controlling files through the entry point, checked against
// netCDF-C itself.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <algorithm>
#include <string>

#include "gateway/registry.hpp"
#include "ops/files/file_mode.hpp"
#include "test_support.hpp"

namespace {

using test::args;
using test::call;
using test::call1;
using test::charRow;
using test::number;
using test::scalar;

constexpr const char* kLibraryFailure = "QUARNA:imagesci:netcdf:libraryFailure";

int ncidOf(const qvArrayPtr& a) { return static_cast<int>(number(a)); }
std::string text(const qvArrayPtr& a) {
  const std::u16string units = test::charText(a.get());
  return std::string(units.begin(), units.end());
}
TEST(FileMode, NamesInAnyCaseWithOrWithoutPrefix) {
  const struct {
    const char* text;
    int mode;
  } cases[] = {
      {"NC_NOCLOBBER", NC_NOCLOBBER},
      {"nc_noclobber", NC_NOCLOBBER},
      {"nc_write", NC_WRITE},
      {"NetCDF4", NC_NETCDF4},
      {"NC_NOWRITE", NC_NOWRITE},
  };
  for (const auto& c : cases) {
    const qvArrayPtr mode = charRow(c.text);
    EXPECT_EQ(c.mode, getFileMode(mode.get())) << c.text;
  }
}

TEST(FileMode, UnknownNamesAreReportedUpperCased) {
  const std::string texts[] = {"nc_noclobber ", "Nc_Foo", "clobber|share", "nc_nc_write"};
  for (const auto& t : texts) {
    std::string upper = t;
    for (char& ch : upper) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    const qvArrayPtr mode = charRow(t);
    EXPECT_MSGID(getFileMode(mode.get()), "QUARNA:imagesci:netcdf:unrecognizedFileMode",
                 args(upper));
  }
}

TEST(FileMode, NumbersPassThroughAndOtherClassesAreRefused) {
  EXPECT_EQ(4100, getFileMode(scalar<std::int32_t>(4100).get()));
  EXPECT_EQ(4, getFileMode(scalar<double>(4.9).get()));
  EXPECT_EQ(512, getFileMode(test::array<double>({512, 1, 2}).get()));

  const qvArrayPtr refused[] = {
      scalar<float>(4),  scalar<std::uint32_t>(4),       test::logicalScalar(true),
      test::emptyCell(), test::stringScalar(u"clobber"), scalar<std::int64_t>(4)};
  for (const auto& mode : refused) {
    EXPECT_MSGID(getFileMode(mode.get()), "QUARNA:imagesci:netcdf:badModeDatatype", args());
  }
  // Emptiness is looked at before the class.
  for (const auto& empty : {test::zeros(qvCHAR_CLASS, {0, 0}), test::zeros(qvDOUBLE_CLASS, {1, 0}),
                            test::zeros(qvLOGICAL_CLASS, {0, 3})}) {
    EXPECT_MSGID(getFileMode(empty.get()), "QUARNA:imagesci:netcdf:argumentIsEmptySet",
                 args("MODE"));
  }
  EXPECT_MSGID(getFileMode(test::charArray(u"clobbe", 2, 3).get()),
               "QUARNA:imagesci:netcdf:argumentWasNotChar", args("file mode"));
}

TEST(OpenCreate, EveryFormatByNameOrNumberReportsItsName) {
  test::ScratchDir dir;
  const struct {
    test::Arg mode;
    const char* format;
  } cases[] = {
      {"clobber", "FORMAT_CLASSIC"},
      {"64bit_offset", "FORMAT_64BIT"},
      {"NC_NETCDF4", "FORMAT_NETCDF4"},
      {scalar<std::int32_t>(NC_NETCDF4 | NC_CLASSIC_MODEL), "FORMAT_NETCDF4_CLASSIC"},
  };
  int k = 0;
  for (const auto& c : cases) {
    const std::string path = dir.file("f" + std::to_string(k++) + ".nc");
    call("close", {call1("create", {path, c.mode.get()})});
    const qvArrayPtr ncid = call1("open", {path, "nowrite"});
    EXPECT_EQ(c.format, text(call1("inqFormat", {ncid}))) << path;
    call("close", {ncid});
  }
}

TEST(OpenCreate, ExistingFileUnderNoclobber) {
  test::ScratchDir dir;
  const std::string path = dir.file("exists.nc");
  call("close", {call1("create", {path, "clobber"})});
  EXPECT_MSGID(call("create", {path, "noclobber"}), "QUARNA:imagesci:netcdf:fileOverwriteErr",
               args());
  EXPECT_MSGID(call("pCreate", {path, "noclobber", 0, 0}), "QUARNA:imagesci:netcdf:fileCreateErr",
               args());
  EXPECT_TRUE(OpenFileRegistry::ids().empty());
}

TEST(RegistryThroughOperations, FollowsOpenCloseAbortAndIgnoresPCreate) {
  test::ScratchDir dir;
  const std::string path = dir.file("r.nc");
  call("close", {call1("create", {path, "clobber"})});
  const int first = ncidOf(call1("open", {path, "nowrite"}));
  const int second = ncidOf(call("pOpen", {path, "nowrite", 8192})[1]);
  EXPECT_NE(first, second);
  EXPECT_EQ((std::vector<int>{std::min(first, second), std::max(first, second)}),
            OpenFileRegistry::ids());

  // A close that fails still forgets the id; an abort that fails keeps it.
  ASSERT_EQ(NC_NOERR, nc_close(first));
  EXPECT_TRUE(test::catchMsgId([&] { call("close", {first}); }));
  EXPECT_FALSE(OpenFileRegistry::contains(first));
  ASSERT_EQ(NC_NOERR, nc_close(second));
  EXPECT_MSGID(call("abort", {second}), kLibraryFailure,
               args("abort", "NC_EBADID", "Not a valid ID"));
  EXPECT_TRUE(OpenFileRegistry::contains(second));
  OpenFileRegistry::remove(second);

  const auto created = call("pCreate", {dir.file("p.nc"), "clobber", 0, 0});
  EXPECT_GT(number(created[0]), 0.0);
  EXPECT_FALSE(OpenFileRegistry::contains(ncidOf(created[1])));
  EXPECT_EQ(NC_NOERR, nc_close(ncidOf(created[1])));
}

TEST(FileControl, DefineModeErrorsNameTheOperation) {
  test::ScratchDir dir;
  const qvArrayPtr id = call1("create", {dir.file("define.nc"), "clobber"});
  EXPECT_MSGID(call("redef", {id}), kLibraryFailure,
               args("redef", "NC_EINDEFINE", "Operation not allowed in define mode"));
  call("endDef", {id});
  EXPECT_MSGID(call("endDef", {id}), kLibraryFailure,
               args("endDef", "NC_ENOTINDEFINE", "Operation not allowed in data mode"));
  call("redef", {id});
  call("pEndDef", {id, 0, 4, 0, 4});
  call("sync", {id});
  call("close", {id});
  EXPECT_MSGID(call("sync", {id}), kLibraryFailure, args("sync", "NC_EBADID", "Not a valid ID"));
}

}  // namespace
