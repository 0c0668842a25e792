// Variables and their data through the entry point, checked against netCDF-C: host
// dimension order, and the checks of whole and subset writes in their order.
#include "test_support.hpp"

namespace {

using namespace test;

constexpr const char* kLibraryFailure = "QUARNA:imagesci:netcdf:libraryFailure";
constexpr const char* kBadLength = "QUARNA:imagesci:netcdf:badIndexArgumentLength";

// A netCDF-4 file with dimensions x(3), y(2), empty t and u (unlimited), made with netCDF-C.
class DataFile : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(NC_NOERR, nc_create(dir_.file("data.nc").c_str(), NC_NETCDF4, &ncid_));
    for (const auto& [name, len, dim] : {std::tuple{"x", 3, &x_},
                                         {"y", 2, &y_},
                                         {"t", NC_UNLIMITED, &t_},
                                         {"u", NC_UNLIMITED, &u_}})
      ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, name, len, dim));
  }
  void TearDown() override { nc_close(ncid_); }

  // A variable of netCDF dimensions dims (netCDF order).
  int defVar(const char* name, nc_type type, std::vector<int> dims) {
    int varid = -1;
    EXPECT_EQ(NC_NOERR, nc_def_var(ncid_, name, type, int(dims.size()), dims.data(), &varid));
    return varid;
  }

  ScratchDir dir_;
  int ncid_ = -1, x_ = -1, y_ = -1, t_ = -1, u_ = -1;
};

TEST_F(DataFile, VariablesKeepHostDimensionOrder) {
  const std::vector<double> hostOrder{double(x_), double(y_)};
  const double v = number(call1("defVar", {ncid_, "v", NC_FLOAT, array(hostOrder)}));
  int netcdfOrder[2] = {};
  ASSERT_EQ(NC_NOERR, nc_inq_vardimid(ncid_, static_cast<int>(v), netcdfOrder));
  EXPECT_EQ((std::vector<int>{y_, x_}), std::vector<int>(netcdfOrder, netcdfOrder + 2));
  EXPECT_EQ(hostOrder, valuesOf(call("inqVar", {ncid_, v})[2]));
  EXPECT_EQ(NC_GLOBAL, number(call1("parameter", {"NC_GLOBAL"})));
  EXPECT_MSGID(call("inqVar", {ncid_, NC_GLOBAL}), "QUARNA:imagesci:netcdf:inqVarNcGlobal", args());
}

TEST_F(DataFile, WholeWriteChecksInOrder) {
  const int records = defVar("r", NC_DOUBLE, {t_, x_}), fixed = defVar("f", NC_DOUBLE, {y_, x_});
  const qvArrayPtr five = zeros(qvDOUBLE_CLASS, {5, 1});
  EXPECT_MSGID(call("putVarDouble", {ncid_, 99, zeros(qvDOUBLE_CLASS, {0, 0})}),
               "QUARNA:imagesci:netcdf:emptyVariableData", args());
  EXPECT_MSGID(call("putVarDouble", {ncid_, records, five}),
               "QUARNA:imagesci:netcdf:incompleteArgsForUnlimitedDimensions", args());
  EXPECT_MSGID(call("putVarDouble", {ncid_, fixed, five}),
               "QUARNA:imagesci:netcdf:dataSizeMismatch", args());
  // Classes are compared: the block would be misread.
  EXPECT_MSGID(call("putVarDouble", {ncid_, fixed, zeros(qvINT8_CLASS, {6, 1})}),
               "QUARNA:imagesci:netcdf:argumentHasBadDatatype", args("data"));
  EXPECT_MSGID(call("putVarDouble", {ncid_, 99, five}), kLibraryFailure,
               args("putVarDouble", "NC_ENOTVAR", "Variable not found"));
}

TEST_F(DataFile, SubsetVectorsAreCheckedInOrderAndCounted) {
  const int grid = defVar("grid", NC_INT, {y_, x_});
  const qvArrayPtr origin = array<double>({0, 0}), shortCount = array<double>({1});
  EXPECT_MSGID(call("getVaraInt", {ncid_, grid, array<double>({0, 0, 0}), shortCount}), kBadLength,
               args("START", "grid", 2, 3));
  // Reads report START's length for every vector, writes the faulty vector's own.
  EXPECT_MSGID(call("getVaraInt", {ncid_, grid, origin, shortCount}), kBadLength,
               args("COUNT", "grid", 2, 2));
  EXPECT_MSGID(call("putVarsInt", {ncid_, grid, origin, array<double>({3, 2}), shortCount,
                                   zeros(qvINT32_CLASS, {6, 1})}),
               kBadLength, args("STRIDE", "grid", 2, 1));
  // Counts whose product wraps around 64 bits matched a one-element data block, and
  // netCDF-C (HDF5 wrapping the same way) then grew both dimensions to 2^63 + 1.
  const std::uint64_t wraps = (std::uint64_t{1} << 63) + 1;
  EXPECT_MSGID(
      call("putVaraInt", {ncid_, defVar("w", NC_INT, {t_, u_}), array<std::uint64_t>({0, 0}),
                          array<std::uint64_t>({wraps, wraps}), scalar<std::int32_t>(7)}),
      "QUARNA:imagesci:netcdf:countNotEqualToData", args(std::numeric_limits<long>::max(), 1));
  std::size_t length = 1;
  ASSERT_EQ(NC_NOERR, nc_inq_dimlen(ncid_, t_, &length));
  EXPECT_EQ(0u, length);
}

}  // namespace
