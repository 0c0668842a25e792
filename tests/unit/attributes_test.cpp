// Attribute management and storage settings through the entry point. (Attribute values of
// every kind round-trip in the Octave attribute tests.)
#include <gtest/gtest.h>
#include <netcdf.h>

#include <string>

#include "test_support.hpp"

namespace {

using test::args;
using test::number;

constexpr const char* kLibraryFailure = "QUARNA:imagesci:netcdf:libraryFailure";

std::u16string text(const qvArrayPtr& a) { return test::charText(a.get()); }

// A file made with netCDF-C holding a variable v(x); the gateway gets its ncid.
class AttributeFile : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(NC_NOERR, nc_create(dir_.file("att.nc").c_str(), NC_NETCDF4 | NC_CLOBBER, &ncid_));
    ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, "x", 4, &x_));
    ASSERT_EQ(NC_NOERR, nc_def_var(ncid_, "v", NC_DOUBLE, 1, &x_, &varid_));
  }
  void TearDown() override { nc_close(ncid_); }

  // ncid, then the given inputs.
  test::Outputs call(const std::string& op, std::initializer_list<test::Arg> rest) {
    std::vector<const qvArray*> all;
    for (const test::Arg& a : rest) all.push_back(a.get());
    const qvArrayPtr id = test::scalar<double>(ncid_), name = test::charRow(op);
    all.insert(all.begin(), {name.get(), id.get()});
    test::Outputs out;
    netcdflib(0, out.data(), static_cast<int>(all.size()), all.data());
    return out;
  }
  qvArrayPtr call1(const std::string& op, std::initializer_list<test::Arg> rest) {
    return std::move(call(op, rest)[0]);
  }
  int defVar(const char* name, nc_type type) {
    int id = 0;
    EXPECT_EQ(NC_NOERR, nc_def_var(ncid_, name, type, 1, &x_, &id));
    return id;
  }

  test::ScratchDir dir_;
  int ncid_ = -1, x_ = -1, varid_ = -1;
};

TEST_F(AttributeFile, ManagementCopiesDeletesRenames) {
  call("putAttDouble", {varid_, "a", NC_DOUBLE, 1.0});
  call("putAttDouble", {varid_, "b", NC_DOUBLE, 2.0});
  EXPECT_EQ(1, number(call1("inqAttID", {varid_, "b"})));
  EXPECT_EQ(u"a", text(call1("inqAttName", {varid_, 0})));
  call("copyAtt", {varid_, "a", ncid_, NC_GLOBAL});
  EXPECT_EQ(1, number(call1("getAttDouble", {NC_GLOBAL, "a"})));
  EXPECT_MSGID(call("renameAtt", {varid_, "a", "b"}), kLibraryFailure,
               args("renameAtt", "NC_ENAMEINUSE", "String match to name in use"));
  call("renameAtt", {varid_, "a", "c"});
  call("delAtt", {varid_, "c"});
  EXPECT_MSGID(call("getAttDouble", {varid_, "c"}), kLibraryFailure,
               args("getAttDouble", "NC_ENOTATT", "Attribute not found"));
  EXPECT_MSGID(call("renameAtt", {varid_, "b", 3}), "QUARNA:imagesci:netcdf:argumentWasNotChar",
               args("attribute"));
  EXPECT_MSGID(call("putAttFloat", {varid_, "b", NC_INT, 1.0}),
               "QUARNA:imagesci:netcdf:argumentHasBadDatatype", args("data"));
  EXPECT_MSGID(call("getAttVlen", {varid_, "b"}), "QUARNA:imagesci:netcdf:unrecognizedVarDatatype",
               args(NC_DOUBLE));
}

// Storage settings round-trip in the Octave storage and interop tests; here, what they refuse.
TEST_F(AttributeFile, StorageSettingsRefuseBadArguments) {
  int y = 0, grid = 0;
  ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, "y", 30, &y));
  const int dims[2] = {y, x_};
  ASSERT_EQ(NC_NOERR, nc_def_var(ncid_, "grid", NC_FLOAT, 2, dims, &grid));
  EXPECT_MSGID(call("defVarChunking", {grid, NC_CHUNKED, 2}),
               "QUARNA:imagesci:netcdf:invalidChunkParameter", args(1, 2));
  EXPECT_MSGID(call("defVarChunking", {grid, 7, 2}),
               "QUARNA:imagesci:netcdf:unrecognizedChunkStorage", args());
  EXPECT_MSGID(call("defVarDeflate", {grid, 1, true, 5}),
               "QUARNA:imagesci:netcdf:expectedLogicalType", args("shuffle flag"));
  EXPECT_MSGID(call("defVarFill", {defVar("c", NC_CHAR), false, "ab"}),
               "QUARNA:imagesci:netcdf:badScalarArgument", args("FILLVALUE", "7-bit ASCII char"));
  EXPECT_MSGID(call("defVarFill", {defVar("u", NC_USHORT), false, 70000}),
               "QUARNA:imagesci:validate:argumentOutOfBounds", args());
}

TEST(ClassicFile, StorageInquiriesAreRefusedAfterTheFormatCall) {
  test::ScratchDir dir;
  int ncid = 0;
  ASSERT_EQ(NC_NOERR, nc_create(dir.file("classic.nc").c_str(), NC_CLOBBER, &ncid));
  EXPECT_MSGID(test::call("inqVarChunking", {ncid, 99}),
               "QUARNA:imagesci:netcdf:attemptedChunkingInquiryOnNetcdf3File", args());
  EXPECT_MSGID(test::call("inqVarFletcher32", {ncid, 99}),
               "QUARNA:imagesci:netcdf:attemptedChecksumInquiryOnNetcdf3File", args());
  nc_close(ncid);
  EXPECT_MSGID(test::call("inqVarChunking", {ncid, 99}), kLibraryFailure,
               args("inqVarChunking", "NC_EBADID", "Not a valid ID"));
}

}  // namespace
