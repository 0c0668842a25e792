// Dimensions, groups, variables and their data through the entry point, checked against
// netCDF-C: host dimension order, the checks of whole and subset writes in their order,
// read shapes, and what netCDF-C stores.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <cmath>

#include "test_support.hpp"

namespace {

using test::args;
using test::array;
using test::Dims;
using test::dimsOf;
using test::number;
using test::text;
using test::valuesOf;

constexpr const char* kLibraryFailure = "QUARNA:imagesci:netcdf:libraryFailure";
constexpr const char* kBadLength = "QUARNA:imagesci:netcdf:badIndexArgumentLength";

// A netCDF-4 file with dimensions x(3), y(2), empty t (unlimited), made with netCDF-C.
class DataFile : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(NC_NOERR, nc_create(dir_.file("data.nc").c_str(), NC_NETCDF4, &ncid_));
    ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, "x", 3, &x_));
    ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, "y", 2, &y_));
    ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, "t", NC_UNLIMITED, &t_));
  }
  void TearDown() override { nc_close(ncid_); }

  // A variable of netCDF dimensions dims (netCDF order).
  int defVar(const char* name, nc_type type, std::vector<int> dims) {
    int varid = -1;
    EXPECT_EQ(NC_NOERR, nc_def_var(ncid_, name, type, int(dims.size()), dims.data(), &varid));
    return varid;
  }
  // The first output of op on the file and varid, then the rest of the inputs.
  qvArrayPtr call(const std::string& op, int varid, std::initializer_list<test::Arg> rest = {}) {
    std::vector<const qvArray*> all;
    const qvArrayPtr name = test::charRow(op), id = test::scalar<double>(ncid_),
                     vid = test::scalar<double>(varid);
    all.insert(all.end(), {name.get(), id.get(), vid.get()});
    for (const test::Arg& a : rest) all.push_back(a.get());
    test::Outputs out;
    netcdflib(0, out.data(), static_cast<int>(all.size()), all.data());
    return std::move(out[0]);
  }

  test::ScratchDir dir_;
  int ncid_ = -1, x_ = -1, y_ = -1, t_ = -1;
};

TEST_F(DataFile, DimensionsGroupsAndVariablesKeepHostOrder) {
  const qvArrayPtr id = test::scalar<double>(ncid_);
  const double v =
      number(test::call1("defVar", {id, "v", NC_FLOAT, array<double>({double(x_), double(y_)})}));
  int netcdfOrder[2] = {};
  ASSERT_EQ(NC_NOERR, nc_inq_vardimid(ncid_, static_cast<int>(v), netcdfOrder));
  EXPECT_EQ((std::vector<int>{y_, x_}), std::vector<int>(netcdfOrder, netcdfOrder + 2));
  const auto inq = test::call("inqVar", {id, v});
  EXPECT_EQ(std::make_tuple(u"v", double(NC_FLOAT), std::vector<double>{double(x_), double(y_)}),
            std::make_tuple(text(inq[0]), number(inq[1]), valuesOf(inq[2])));
  EXPECT_EQ((std::vector<double>{double(x_), double(y_), double(t_)}),
            valuesOf(test::call1("inqDimIDs", {id, true})));
  EXPECT_EQ(std::vector<double>{double(t_)}, valuesOf(test::call1("inqUnlimDims", {id})));
  EXPECT_EQ((Dims{0, 0}), dimsOf(test::call1("inqGrps", {id})));
  double parent = ncid_;
  for (const char* name : {"a", "b", "c"}) parent = number(test::call1("defGrp", {parent, name}));
  EXPECT_EQ(u"/a/b/c", text(test::call1("inqGrpNameFull", {parent})));
  EXPECT_MSGID(test::call("inqGrpParent", {id}), kLibraryFailure,
               args("inqGrpParent", "NC_ENOGRP", "No group found."));
  EXPECT_EQ(NC_GLOBAL, number(test::call1("parameter", {"NC_GLOBAL"})));
  EXPECT_MSGID(test::call("inqVar", {id, NC_GLOBAL}), "QUARNA:imagesci:netcdf:inqVarNcGlobal",
               args());
  EXPECT_MSGID(test::call("defVar", {id, "w", NC_FLOAT, array<double>({0, NAN})}),
               "QUARNA:imagesci:netcdf:invalidNaNInfForIntegerType", args("dimids"));
}

TEST_F(DataFile, WholeWriteChecksInOrder) {
  const int records = defVar("r", NC_DOUBLE, {t_, x_});
  const int fixed = defVar("f", NC_DOUBLE, {y_, x_});
  const qvArrayPtr five = test::zeros(qvDOUBLE_CLASS, {5, 1});
  EXPECT_MSGID(call("putVarDouble", 99, {test::zeros(qvDOUBLE_CLASS, {0, 0})}),
               "QUARNA:imagesci:netcdf:emptyVariableData", args());
  EXPECT_MSGID(call("putVarDouble", records, {five}),
               "QUARNA:imagesci:netcdf:incompleteArgsForUnlimitedDimensions", args());
  EXPECT_MSGID(call("putVarDouble", fixed, {five}), "QUARNA:imagesci:netcdf:dataSizeMismatch",
               args());
  // Shapes are not compared, classes are: the block would be misread.
  call("putVarDouble", fixed, {test::zeros(qvDOUBLE_CLASS, {6, 1})});
  EXPECT_MSGID(call("putVarDouble", fixed, {test::zeros(qvINT8_CLASS, {6, 1})}),
               "QUARNA:imagesci:netcdf:argumentHasBadDatatype", args("data"));
  EXPECT_MSGID(call("putVarDouble", 99, {five}), kLibraryFailure,
               args("putVarDouble", "NC_ENOTVAR", "Variable not found"));
}

TEST_F(DataFile, SubsetShapesStridesAndLengthChecks) {
  const int grid = defVar("grid", NC_INT, {y_, x_});
  call("putVarInt", grid, {test::numeric(qvINT32_CLASS, {0, 1, 2, 3, 4, 5}, {3, 2})});
  const qvArrayPtr origin = array<double>({0, 0});
  EXPECT_EQ((std::vector<std::int32_t>{0, 2, 3, 5}),
            valuesOf<std::int32_t>(
                call("getVarsInt", grid, {origin, array<double>({2, 2}), array<double>({2, 1})})));
  EXPECT_EQ((Dims{1, 1}), dimsOf(call("getVar1Int", grid, {array<double>({1, 1})})));
  EXPECT_EQ((Dims{3, 0}), dimsOf(call("getVaraInt", grid, {origin, array<double>({3, 0})})));

  const qvArrayPtr shortCount = array<double>({1}), six = test::zeros(qvINT32_CLASS, {6, 1});
  EXPECT_MSGID(call("getVaraInt", grid, {array<double>({0, 0, 0}), shortCount}), kBadLength,
               args("START", "grid", 2, 3));
  // Reads report START's length for every vector, writes the faulty vector's own.
  EXPECT_MSGID(call("getVaraInt", grid, {origin, shortCount}), kBadLength,
               args("COUNT", "grid", 2, 2));
  EXPECT_MSGID(call("putVaraInt", grid, {origin, shortCount, six}), kBadLength,
               args("COUNT", "grid", 2, 1));
  EXPECT_MSGID(call("putVarsInt", grid, {origin, array<double>({3, 2}), shortCount, six}),
               kBadLength, args("STRIDE", "grid", 2, 1));
}

TEST_F(DataFile, SubsetWritesCountGrowAndConvert) {
  const int records = defVar("r", NC_DOUBLE, {t_, x_});
  const qvArrayPtr start = array<double>({0, 4}), count = array<double>({3, 1});
  EXPECT_MSGID(call("putVar1Double", records, {start, array<double>({1, 2})}),
               "QUARNA:imagesci:netcdf:countNotEqualToData", args(1, 2));
  EXPECT_MSGID(call("putVaraDouble", records, {start, count, test::zeros(qvDOUBLE_CLASS, {0, 3})}),
               "QUARNA:imagesci:netcdf:emptyVariableData", args());
  call("putVaraDouble", records, {start, count, array<double>({1, 2, 3})});
  EXPECT_EQ((Dims{3, 5}), dimsOf(call("getVarDouble", records)));
  EXPECT_MSGID(
      call("putVar1Double", defVar("f", NC_DOUBLE, {y_, x_}), {array<double>({0, 7}), 1.0}),
      kLibraryFailure, args("putVar1Double", "NC_EINVALCOORDS", "Index exceeds dimension bound"));

  const int text = defVar("t", NC_CHAR, {x_});
  EXPECT_MSGID(call("getVarDouble", text), kLibraryFailure,
               args("getVarDouble", "NC_ECHAR", "Attempt to convert between text & numbers"));
  EXPECT_MSGID(call("getVarVlen", text), "QUARNA:imagesci:netcdf:unrecognizedVarDatatype",
               args(NC_CHAR));
  EXPECT_MSGID(call("putVarDouble", defVar("b", NC_BYTE, {x_}), {array<double>({1, 300, 2})}),
               kLibraryFailure,
               args("putVarDouble", "NC_ERANGE", "Numeric conversion not representable"));
}

// Counts whose product wraps around 64 bits matched a one-element data block, and
// netCDF-C (HDF5 wrapping the same way) then grew both dimensions to 2^63 + 1.
TEST_F(DataFile, SelectionsTooLargeToCountAreNotTheData) {
  int u = -1;
  ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, "u", NC_UNLIMITED, &u));
  const std::uint64_t wraps = (std::uint64_t{1} << 63) + 1;
  EXPECT_MSGID(call("putVaraInt", defVar("w", NC_INT, {t_, u}),
                    {array<std::uint64_t>({0, 0}), array<std::uint64_t>({wraps, wraps}),
                     test::scalar<std::int32_t>(7)}),
               "QUARNA:imagesci:netcdf:countNotEqualToData",
               args(std::numeric_limits<long>::max(), 1));
  std::size_t length = 1;
  ASSERT_EQ(NC_NOERR, nc_inq_dimlen(ncid_, t_, &length));
  EXPECT_EQ(0u, length);
}

}  // namespace
