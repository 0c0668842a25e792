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
std::vector<double> numbers(const test::Outputs& out, std::size_t n) {
  std::vector<double> v;
  for (std::size_t i = 0; i < n; ++i) v.push_back(number(out[i]));
  return v;
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
    const std::string path = dir.file(std::string("f").append(std::to_string(k++)).append(".nc"));
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

namespace {

const char* const kBadId = "Not a valid ID";

// A classic file whose close fails: two variables each beyond the format's size limit.
qvArrayPtr fileThatFailsToClose(const std::string& path) {
  qvArrayPtr id = call1("create", {path, "clobber"});
  const qvArrayPtr dim = call1("defDim", {id, "x", 1 << 30});
  call("defVar", {id, "a", NC_DOUBLE, dim.get()});
  call("defVar", {id, "b", NC_DOUBLE, dim.get()});
  return id;
}

}  // namespace

// netCDF-C 4.9.0 keeps such an id after freeing part of the file, and crashes on any later
// call with it or a group of it; each is refused as netCDF-C refuses a closed id.
TEST(RegistryThroughOperations, IdsOfAFailedCloseAreRefusedEverywhere) {
  test::ScratchDir dir;
  const qvArrayPtr big = fileThatFailsToClose(dir.file("big.nc"));
  EXPECT_MSGID(call("close", {big}), "QUARNA:imagesci:netcdf:formatConstraintsViolation", args());
  const int ncid = ncidOf(big);
  EXPECT_FALSE(OpenFileRegistry::contains(ncid));
  const int other = ncidOf(call1("create", {dir.file("other.nc"), "netcdf4"}));
  const double id = ncid;
  const struct {
    const char* op;
    std::vector<double> inputs;
  } calls[] = {
      {"close", {id}},    {"abort", {id}},          {"sync", {id}},
      {"redef", {id}},    {"endDef", {id}},         {"pEndDef", {id, 0, 4, 0, 4}},
      {"inq", {id}},      {"inqFormat", {id}},      {"setFill", {id, NC_FILL}},
      {"inqVarIDs", {id + 1}}, {"getVarDouble", {id, 0}},
  };
  for (const auto& c : calls) {
    SCOPED_TRACE(c.op);
    const qvArrayPtr name = charRow(c.op);
    std::vector<qvArrayPtr> owned;
    std::vector<const qvArray*> inputs{name.get()};
    for (const double v : c.inputs) inputs.push_back(owned.emplace_back(scalar<double>(v)).get());
    test::Outputs out;
    EXPECT_MSGID(netcdflib(0, out.data(), static_cast<int>(inputs.size()), inputs.data()),
                 kLibraryFailure, args(c.op, "NC_EBADID", kBadId));
  }
  EXPECT_MSGID(call("copyAtt", {other, NC_GLOBAL, "a", ncid, NC_GLOBAL}), kLibraryFailure,
               args("copyAtt", "NC_EBADID", kBadId));
  // Other files, and files opened later, are untouched.
  EXPECT_EQ((std::vector<double>{0, 0, 0, -1}), numbers(call("inq", {other}), 4));
  call("close", {other});
  const qvArrayPtr later = call1("create", {dir.file("later.nc"), "clobber"});
  call("close", {later});
}

// netCDF-C takes names as C strings: anything after a NUL would be dropped, and another
// file or object used than the one named.
TEST(OpenCreate, NamesWithANulAreRefusedUnderTheirArgument) {
  test::ScratchDir dir;
  const std::string nul("x.nc\0junk", 9);
  EXPECT_MSGID(call("create", {dir.file(nul), "clobber"}),
               "QUARNA:imagesci:netcdf:nameContainsNul", args("file"));
  EXPECT_MSGID(call("open", {dir.file(nul), "nowrite"}), "QUARNA:imagesci:netcdf:nameContainsNul",
               args("file"));
  EXPECT_FALSE(std::filesystem::exists(dir.file("x.nc")));
  const qvArrayPtr id = call1("create", {dir.file("n.nc"), "netcdf4"});
  const std::string name("d\0e", 3);
  EXPECT_MSGID(call("defDim", {id, name, 1}), "QUARNA:imagesci:netcdf:nameContainsNul",
               args("dimension"));
  EXPECT_MSGID(call("defGrp", {id, name}), "QUARNA:imagesci:netcdf:nameContainsNul",
               args("group name"));
  EXPECT_MSGID(call("putAttText", {id, NC_GLOBAL, name, NC_CHAR, "t"}),
               "QUARNA:imagesci:netcdf:nameContainsNul", args("attribute"));
  EXPECT_EQ((std::vector<double>{0, 0, 0, -1}), numbers(call("inq", {id}), 4));
  // As character data a NUL is a character like any other.
  const qvArrayPtr dim = call1("defDim", {id, "x", 1});
  const qvArrayPtr var = call1("defVar", {id, "c", NC_CHAR, dim.get()});
  call("defVarFill", {id, var.get(), false, std::string(1, '\0')});
  call("close", {id});
}
