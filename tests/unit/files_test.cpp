// Opening, creating and controlling files through the entry point, checked against
// netCDF-C itself.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <cstring>
#include <string>

#include "gateway/registry.hpp"
#include "ops/files/file_mode.hpp"
#include "test_support.hpp"

namespace {

using test::args;
using test::callGateway;
using test::charRow;
using test::dimsOf;
using test::number;
using test::scalar;
using test::valuesOf;

constexpr const char* kLibraryFailure = "QUARNA:imagesci:netcdf:libraryFailure";

int ncidOf(const qvArrayPtr& a) { return static_cast<int>(number(a)); }
std::string text(const qvArrayPtr& a) {
  const std::u16string units = test::charText(a.get());
  return std::string(units.begin(), units.end());
}

bool isOpenInNetcdf(int ncid) {
  int ndims = 0;
  return nc_inq_ndims(ncid, &ndims) == NC_NOERR;
}

int createFile(const std::string& path, const qvArray* mode) {
  const qvArrayPtr name = charRow(path);
  return ncidOf(callGateway("create", {name.get(), mode})[0]);
}

void closeFile(int ncid) {
  const qvArrayPtr id = scalar<double>(ncid);
  callGateway("close", {id.get()});
}

TEST(FileMode, NamesInAnyCaseWithOrWithoutPrefix) {
  const struct {
    const char* text;
    int mode;
  } cases[] = {
      {"NC_NOCLOBBER", NC_NOCLOBBER},
      {"noClobber", NC_NOCLOBBER},
      {"nc_noclobber", NC_NOCLOBBER},
      {"clobber", NC_CLOBBER},
      {"SHARE", NC_SHARE},
      {"nc_write", NC_WRITE},
      {"NetCDF4", NC_NETCDF4},
      {"64BIT_OFFSET", NC_64BIT_OFFSET},
      {"classic_model", NC_CLASSIC_MODEL},
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
    qvArrayPtr mode;
    const char* format;
  } cases[] = {
      {charRow("clobber"), "FORMAT_CLASSIC"},
      {scalar<double>(0), "FORMAT_CLASSIC"},
      {charRow("64bit_offset"), "FORMAT_64BIT"},
      {scalar<std::int32_t>(NC_64BIT_OFFSET), "FORMAT_64BIT"},
      {charRow("NC_NETCDF4"), "FORMAT_NETCDF4"},
      {scalar<double>(NC_NETCDF4), "FORMAT_NETCDF4"},
      {scalar<std::int32_t>(NC_NETCDF4 | NC_CLASSIC_MODEL), "FORMAT_NETCDF4_CLASSIC"},
  };
  int k = 0;
  for (const auto& c : cases) {
    const std::string path = dir.file("f" + std::to_string(k++) + ".nc");
    closeFile(createFile(path, c.mode.get()));
    const qvArrayPtr name = charRow(path);
    const qvArrayPtr nowrite = charRow("nowrite");
    const int ncid = ncidOf(callGateway("open", {name.get(), nowrite.get()})[0]);
    const qvArrayPtr id = scalar<double>(ncid);
    EXPECT_EQ(c.format, text(callGateway("inqFormat", {id.get()})[0])) << path;
    closeFile(ncid);
  }
}

TEST(OpenCreate, Cdf5OpensButHasNoFormatName) {
  test::ScratchDir dir;
  const int ncid = createFile(dir.file("cdf5.nc"), scalar<double>(NC_64BIT_DATA).get());
  const qvArrayPtr id = scalar<double>(ncid);
  EXPECT_MSGID(callGateway("inqFormat", {id.get()}), "QUARNA:imagesci:netcdf:unknownNetCDFFormat",
               args(5));
  closeFile(ncid);
}

TEST(OpenCreate, ExistingFileUnderNoclobber) {
  test::ScratchDir dir;
  const std::string path = dir.file("exists.nc");
  closeFile(createFile(path, charRow("clobber").get()));
  const qvArrayPtr name = charRow(path);
  const qvArrayPtr noclobber = charRow("noclobber");
  EXPECT_MSGID(callGateway("create", {name.get(), noclobber.get()}),
               "QUARNA:imagesci:netcdf:fileOverwriteErr", args());
  const qvArrayPtr size = scalar<double>(0);
  EXPECT_MSGID(callGateway("pCreate", {name.get(), noclobber.get(), size.get(), size.get()}),
               "QUARNA:imagesci:netcdf:fileCreateErr", args());
  EXPECT_TRUE(OpenFileRegistry::ids().empty());
}

TEST(OpenCreate, MissingFileIsAStatusError) {
  test::ScratchDir dir;
  const qvArrayPtr name = charRow(dir.file("missing.nc"));
  const qvArrayPtr nowrite = charRow("nowrite");
  const auto caught = test::catchMsgId([&] { callGateway("open", {name.get(), nowrite.get()}); });
  ASSERT_TRUE(caught);
  EXPECT_EQ(kLibraryFailure, caught->id);
  ASSERT_EQ(3u, caught->args.size());
  EXPECT_EQ(resource_core::MsgArg(std::string("open")), caught->args[0]);
}

TEST(OpenCreate, UnreachableUrlFailsThroughTheStatusMapping) {
  // Port 9 (discard) is closed on a test machine; netCDF-C gets the URL unchanged.
  const qvArrayPtr url = charRow("http://127.0.0.1:9/nothing.nc");
  const qvArrayPtr nowrite = charRow("nowrite");
  const auto caught = test::catchMsgId([&] { callGateway("open", {url.get(), nowrite.get()}); });
  ASSERT_TRUE(caught);
  EXPECT_TRUE(caught->id == kLibraryFailure ||
              caught->id == "QUARNA:imagesci:netcdf:librarydapFailure")
      << caught->id;
  EXPECT_EQ(resource_core::MsgArg(std::string("open")), caught->args.at(0));
}

TEST(RegistryThroughOperations, FollowsOpenCloseAbortAndIgnoresPCreate) {
  test::ScratchDir dir;
  const std::string path = dir.file("r.nc");
  closeFile(createFile(path, charRow("clobber").get()));
  const qvArrayPtr name = charRow(path);
  const qvArrayPtr nowrite = charRow("nowrite");
  const int first = ncidOf(callGateway("open", {name.get(), nowrite.get()})[0]);
  const qvArrayPtr hint = scalar<double>(8192);
  const auto pOpened = callGateway("pOpen", {name.get(), nowrite.get(), hint.get()});
  const int second = ncidOf(pOpened[1]);
  EXPECT_NE(first, second);
  EXPECT_EQ((std::vector<int>{std::min(first, second), std::max(first, second)}),
            OpenFileRegistry::ids());

  // A close that fails still forgets the id; an abort that fails keeps it.
  ASSERT_EQ(NC_NOERR, nc_close(first));
  EXPECT_TRUE(test::catchMsgId([&] { closeFile(first); }));
  EXPECT_FALSE(OpenFileRegistry::contains(first));
  ASSERT_EQ(NC_NOERR, nc_close(second));
  const qvArrayPtr secondId = scalar<double>(second);
  const auto failedAbort = test::catchMsgId([&] { callGateway("abort", {secondId.get()}); });
  ASSERT_TRUE(failedAbort);
  EXPECT_EQ(args("abort", "NC_EBADID", "Not a valid ID"), failedAbort->args);
  EXPECT_TRUE(OpenFileRegistry::contains(second));
  OpenFileRegistry::remove(second);

  const qvArrayPtr other = charRow(dir.file("p.nc"));
  const qvArrayPtr clobber = charRow("clobber");
  const qvArrayPtr size = scalar<double>(0);
  const auto created = callGateway("pCreate", {other.get(), clobber.get(), size.get(), size.get()});
  EXPECT_GT(number(created[0]), 0.0);
  EXPECT_FALSE(OpenFileRegistry::contains(ncidOf(created[1])));
  EXPECT_EQ(NC_NOERR, nc_close(ncidOf(created[1])));
}

TEST(Unload, ClosesEveryOpenFileWithOneWarningAndKeepsTheirData) {
  test::ScratchDir dir;
  int ids[3];
  for (int k = 0; k < 3; ++k)
    ids[k] = createFile(dir.file("u" + std::to_string(k) + ".nc"), charRow("netcdf4").get());
  // Data written through netCDF-C and never synced: unload must complete the file.
  int dim = 0, var = 0;
  const int values[4] = {1, 2, 3, 4};
  ASSERT_EQ(NC_NOERR, nc_def_dim(ids[1], "x", 4, &dim));
  ASSERT_EQ(NC_NOERR, nc_def_var(ids[1], "v", NC_INT, 1, &dim, &var));
  ASSERT_EQ(NC_NOERR, nc_put_var_int(ids[1], var, values));

  std::vector<std::string> warnings;
  const qvWarningHandler previous =
      qvSetWarningHandler([&](const resource_core::BaseMsgID& id, const std::u16string&) {
        warnings.push_back(id.fullIdentifier());
      });
  QNTerminate();
  qvSetWarningHandler(previous);

  EXPECT_EQ((std::vector<std::string>{"QUARNA:imagesci:netcdf:closingFileHandle"}), warnings);
  for (int id : ids) EXPECT_FALSE(isOpenInNetcdf(id)) << id;
  int ncid = 0, back[4] = {};
  ASSERT_EQ(NC_NOERR, nc_open(dir.file("u1.nc").c_str(), NC_NOWRITE, &ncid));
  ASSERT_EQ(NC_NOERR, nc_get_var_int(ncid, 0, back));
  EXPECT_EQ(0, std::memcmp(values, back, sizeof values));
  nc_close(ncid);
  for (int id : ids) OpenFileRegistry::remove(id);
}

TEST(FileControl, InqReportsTheUnlimitedDimension) {
  test::ScratchDir dir;
  const int ncid = createFile(dir.file("inq.nc"), charRow("netcdf4").get());
  const qvArrayPtr id = scalar<double>(ncid);
  auto outputs = callGateway("inq", {id.get()});
  EXPECT_EQ((std::vector<double>{0, 0, 0, -1}),
            (std::vector<double>{number(outputs[0]), number(outputs[1]), number(outputs[2]),
                                 number(outputs[3])}));
  int fixed = 0, unlimited = 0, var = 0;
  ASSERT_EQ(NC_NOERR, nc_def_dim(ncid, "x", 3, &fixed));
  ASSERT_EQ(NC_NOERR, nc_def_dim(ncid, "t", NC_UNLIMITED, &unlimited));
  ASSERT_EQ(NC_NOERR, nc_def_var(ncid, "v", NC_INT, 1, &fixed, &var));
  ASSERT_EQ(NC_NOERR, nc_put_att_int(ncid, NC_GLOBAL, "a", NC_INT, 1, &fixed));
  outputs = callGateway("inq", {id.get()});
  EXPECT_EQ((std::vector<double>{2, 1, 1, double(unlimited)}),
            (std::vector<double>{number(outputs[0]), number(outputs[1]), number(outputs[2]),
                                 number(outputs[3])}));
  closeFile(ncid);
}

TEST(FileControl, DefineModeErrorsNameTheOperation) {
  test::ScratchDir dir;
  const int ncid = createFile(dir.file("define.nc"), charRow("clobber").get());
  const qvArrayPtr id = scalar<double>(ncid);
  EXPECT_MSGID(callGateway("redef", {id.get()}), kLibraryFailure,
               args("redef", "NC_EINDEFINE", "Operation not allowed in define mode"));
  callGateway("endDef", {id.get()});
  EXPECT_MSGID(callGateway("endDef", {id.get()}), kLibraryFailure,
               args("endDef", "NC_ENOTINDEFINE", "Operation not allowed in data mode"));
  callGateway("redef", {id.get()});
  const qvArrayPtr zero = scalar<double>(0), align = scalar<double>(4);
  callGateway("pEndDef", {id.get(), zero.get(), align.get(), zero.get(), align.get()});
  callGateway("sync", {id.get()});
  closeFile(ncid);
  EXPECT_MSGID(callGateway("sync", {id.get()}), kLibraryFailure,
               args("sync", "NC_EBADID", "Not a valid ID"));
}

TEST(FileControl, SettingsReturnThePreviousValue) {
  test::ScratchDir dir;
  const int ncid = createFile(dir.file("fill.nc"), charRow("clobber").get());
  const qvArrayPtr id = scalar<double>(ncid);
  const qvArrayPtr nofill = scalar<double>(NC_NOFILL), fill = scalar<double>(NC_FILL);
  EXPECT_EQ(NC_FILL, number(callGateway("setFill", {id.get(), nofill.get()})[0]));
  EXPECT_EQ(NC_NOFILL, number(callGateway("setFill", {id.get(), fill.get()})[0]));
  closeFile(ncid);

  const qvArrayPtr offset = scalar<double>(NC_FORMAT_64BIT_OFFSET);
  const double previous = number(callGateway("setDefaultFormat", {offset.get()})[0]);
  const qvArrayPtr restore = scalar<double>(previous);
  EXPECT_EQ(NC_FORMAT_64BIT_OFFSET, number(callGateway("setDefaultFormat", {restore.get()})[0]));
  const qvArrayPtr bogus = scalar<double>(99);
  EXPECT_MSGID(callGateway("setDefaultFormat", {bogus.get()}), kLibraryFailure,
               args("setDefaultFormat", "NC_EINVAL", "Invalid argument"));
}

TEST(FileControl, LibraryVersionIsTheFirstWord) {
  const std::string version = text(callGateway("inqLibVers")[0]);
  const std::string full = nc_inq_libvers();
  EXPECT_FALSE(version.empty());
  EXPECT_EQ(std::string::npos, version.find(' '));
  EXPECT_EQ(0u, full.find(version));
}

TEST(FileControl, ChunkCacheReadsBackWhatWasSet) {
  const auto before = callGateway("getChunkCache");
  const qvArrayPtr size = scalar<double>(32 << 20), nelems = scalar<double>(1009);
  const qvArrayPtr preemption = scalar<float>(0.25f);
  callGateway("setChunkCache", {size.get(), nelems.get(), preemption.get()});
  const auto after = callGateway("getChunkCache");
  EXPECT_EQ(32 << 20, number(after[0]));
  EXPECT_EQ(1009, number(after[1]));
  EXPECT_EQ(0.25, number(after[2]));
  // A preemption above 1 is netCDF-C's to refuse.
  const qvArrayPtr tooMuch = scalar<float>(2.0f);
  EXPECT_MSGID(callGateway("setChunkCache", {size.get(), nelems.get(), tooMuch.get()}),
               kLibraryFailure, args("setChunkCache", "NC_EINVAL", "Invalid argument"));
  const qvArrayPtr oldPreemption = scalar<float>(static_cast<float>(number(before[2])));
  callGateway("setChunkCache", {before[0].get(), before[1].get(), oldPreemption.get()});
}

}  // namespace
