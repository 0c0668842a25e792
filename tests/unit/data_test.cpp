// Variable data through the entry point: the checks of whole and subset writes in order,
// read shapes, and what netCDF-C stores. (Every type in every form round-trips in the
// Octave data tests.)
#include <gtest/gtest.h>
#include <netcdf.h>

#include <string>

#include "test_support.hpp"

namespace {

using test::args;
using test::array;
using test::charRow;
using test::Dims;
using test::dimsOf;
using test::scalar;
using test::valuesOf;

constexpr const char* kLibraryFailure = "QUARNA:imagesci:netcdf:libraryFailure";

// A netCDF-4 file with dimensions x(3), y(2), empty t (unlimited), made with netCDF-C;
// the gateway is given its ncid.
class DataFile : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(NC_NOERR, nc_create(dir_.file("data.nc").c_str(), NC_NETCDF4, &ncid_));
    ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, "x", 3, &x_));
    ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, "y", 2, &y_));
    ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, "t", NC_UNLIMITED, &t_));
    id_ = scalar<double>(ncid_);
  }
  void TearDown() override { nc_close(ncid_); }

  // A variable of netCDF dimensions dims (netCDF order).
  int defVar(const std::string& name, nc_type type, std::vector<int> dims) {
    int varid = -1;
    EXPECT_EQ(NC_NOERR, nc_def_var(ncid_, name.c_str(), type, static_cast<int>(dims.size()),
                                   dims.data(), &varid));
    return varid;
  }
  qvArrayPtr call(const std::string& op, int varid, std::initializer_list<test::Arg> rest = {}) {
    std::vector<const qvArray*> all;
    for (const test::Arg& a : rest) all.push_back(a.get());
    const qvArrayPtr name = charRow(op), vid = scalar<double>(varid);
    all.insert(all.begin(), {name.get(), id_.get(), vid.get()});
    test::Outputs out;
    netcdflib(0, out.data(), static_cast<int>(all.size()), all.data());
    return std::move(out[0]);
  }

  test::ScratchDir dir_;
  int ncid_ = -1, x_ = -1, y_ = -1, t_ = -1;
  qvArrayPtr id_;
};

TEST_F(DataFile, WholeWriteChecksInOrder) {
  const int records = defVar("r", NC_DOUBLE, {t_, x_});
  const int fixed = defVar("f", NC_DOUBLE, {y_, x_});
  const qvArrayPtr none = test::zeros(qvDOUBLE_CLASS, {0, 0}),
                   five = test::zeros(qvDOUBLE_CLASS, {5, 1});
  EXPECT_MSGID(call("putVarDouble", 99, {none}), "QUARNA:imagesci:netcdf:emptyVariableData",
               args());
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
  int z = 0;
  ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, "ten", 10, &z));
  const int line = defVar("line", NC_DOUBLE, {z});
  const qvArrayPtr ramp = array<double>({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, {10, 1});
  call("putVarDouble", line, {ramp});
  EXPECT_EQ((std::vector<double>{0, 2, 4, 6, 8}),
            valuesOf<double>(call("getVarsDouble", line, {0, 5, 2})));

  const int grid = defVar("grid", NC_INT, {y_, x_});
  const qvArrayPtr origin = array<double>({0, 0});
  EXPECT_EQ((Dims{1, 1}), dimsOf(call("getVar1Int", grid, {origin})));
  EXPECT_EQ((Dims{3, 2}), dimsOf(call("getVaraInt", grid, {origin, array<double>({3, 2})})));
  EXPECT_EQ((Dims{3, 0}), dimsOf(call("getVaraInt", grid, {origin, array<double>({3, 0})})));

  const qvArrayPtr longStart = array<double>({0, 0, 0}), shortCount = array<double>({1});
  EXPECT_MSGID(call("getVaraInt", grid, {longStart, shortCount}),
               "QUARNA:imagesci:netcdf:badIndexArgumentLength", args("START", "grid", 2, 3));
  // Reads report START's length for every vector, writes the faulty vector's own.
  EXPECT_MSGID(call("getVaraInt", grid, {origin, shortCount}),
               "QUARNA:imagesci:netcdf:badIndexArgumentLength", args("COUNT", "grid", 2, 2));
  const qvArrayPtr six = test::zeros(qvINT32_CLASS, {6, 1});
  EXPECT_MSGID(call("putVaraInt", grid, {origin, shortCount, six}),
               "QUARNA:imagesci:netcdf:badIndexArgumentLength", args("COUNT", "grid", 2, 1));
  EXPECT_MSGID(call("putVarsInt", grid, {origin, array<double>({3, 2}), shortCount, six}),
               "QUARNA:imagesci:netcdf:badIndexArgumentLength", args("STRIDE", "grid", 2, 1));
}

TEST_F(DataFile, SubsetWritesCountAndGrow) {
  const int records = defVar("r", NC_DOUBLE, {t_, x_});
  const qvArrayPtr start = array<double>({0, 4}), count = array<double>({3, 1});
  EXPECT_MSGID(call("putVar1Double", records, {start, array<double>({1, 2})}),
               "QUARNA:imagesci:netcdf:countNotEqualToData", args(1, 2));
  EXPECT_MSGID(call("putVaraDouble", records, {start, count, test::zeros(qvDOUBLE_CLASS, {0, 3})}),
               "QUARNA:imagesci:netcdf:emptyVariableData", args());
  call("putVaraDouble", records, {start, count, array<double>({1, 2, 3})});
  std::size_t length = 0;
  ASSERT_EQ(NC_NOERR, nc_inq_dimlen(ncid_, t_, &length));
  EXPECT_EQ(5u, length);
  EXPECT_EQ((Dims{3, 5}), dimsOf(call("getVarDouble", records)));

  const qvArrayPtr outside = array<double>({0, 7});
  const int fixed = defVar("f", NC_DOUBLE, {y_, x_});
  EXPECT_MSGID(call("putVar1Double", fixed, {outside, 1.0}), kLibraryFailure,
               args("putVar1Double", "NC_EINVALCOORDS", "Index exceeds dimension bound"));
  EXPECT_MSGID(call("putVar1Uint64", fixed, {outside, 1.0}),
               "QUARNA:imagesci:netcdf:unrecognizedOperation", args("putVar1Uint64"));
}

TEST_F(DataFile, NetcdfConvertsAndReportsRange) {
  const int text = defVar("t", NC_CHAR, {x_});
  EXPECT_MSGID(call("getVarDouble", text), kLibraryFailure,
               args("getVarDouble", "NC_ECHAR", "Attempt to convert between text & numbers"));
  EXPECT_MSGID(call("getVarVlen", text), "QUARNA:imagesci:netcdf:unrecognizedVarDatatype",
               args(NC_CHAR));
  const int bytes = defVar("b", NC_BYTE, {x_});
  EXPECT_MSGID(call("putVarDouble", bytes, {array<double>({1, 300, 2})}), kLibraryFailure,
               args("putVarDouble", "NC_ERANGE", "Numeric conversion not representable"));
}

}  // namespace
