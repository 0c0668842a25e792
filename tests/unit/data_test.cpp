// Variables and their data through the entry point, checked against netCDF-C: host
// dimension order, the checks of whole and subset writes in their order, and
// variable-length data refused before netCDF-C sees it, with everything converted up to
// the failure released (the sanitizer build checks that). Compound data refused naming the
// field: tests/octave/user_types_test.m.
#include "convert/vlen.hpp"
#include "test_support.hpp"

namespace {

using namespace test;

constexpr const char* kBadLength = "badIndexArgumentLength";
constexpr const char* kBadType = "argumentHasBadDatatype";

// A netCDF-4 file with dimensions x(3), y(2), empty t and u (unlimited), made with netCDF-C.
class DataFile : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(NC_NOERR, nc_create(dir_.file("data.nc").c_str(), NC_NETCDF4, &ncid_));
    for (const auto& [name, len, dim] :
         {std::tuple{"x", 3, &x_}, {"y", 2, &y_}, {"t", 0, &t_}, {"u", 0, &u_}})
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
  EXPECT_MSGID(call("inqVar", {ncid_, NC_GLOBAL}), "inqVarNcGlobal");
}

// Whole writes: emptiness, unlimited dimensions, size, then class (the block would be
// misread). Subsets: reads report START's length for every vector, writes the faulty
// vector's own.
TEST_F(DataFile, WritesAreCheckedInOrder) {
  const int records = defVar("r", NC_DOUBLE, {t_, x_}), fixed = defVar("f", NC_DOUBLE, {y_, x_});
  const qvArrayPtr five = zeros(qvDOUBLE_CLASS, {5, 1});
  EXPECT_MSGID(call("putVarDouble", {ncid_, 99, zeros(qvDOUBLE_CLASS, {0, 0})}),
               "emptyVariableData");
  EXPECT_MSGID(call("putVarDouble", {ncid_, records, five}),
               "incompleteArgsForUnlimitedDimensions");
  EXPECT_MSGID(call("putVarDouble", {ncid_, fixed, five}), "dataSizeMismatch");
  EXPECT_MSGID(call("putVarDouble", {ncid_, fixed, zeros(qvINT8_CLASS, {6, 1})}), kBadType, "data");
  const qvArrayPtr origin = array<double>({0, 0}), shortCount = array<double>({1});
  EXPECT_MSGID(call("getVaraInt", {ncid_, fixed, array<double>({0, 0, 0}), shortCount}), kBadLength,
               "START", "f", 2, 3);
  EXPECT_MSGID(call("getVaraInt", {ncid_, fixed, origin, shortCount}), kBadLength, "COUNT", "f", 2,
               2);
  EXPECT_MSGID(call("putVarsInt", {ncid_, fixed, origin, array<double>({3, 2}), shortCount,
                                   zeros(qvINT32_CLASS, {6, 1})}),
               kBadLength, "STRIDE", "f", 2, 1);
  // Counts whose product wraps around 64 bits matched a one-element data block, and
  // netCDF-C (HDF5 wrapping the same way) then grew both dimensions to 2^63 + 1.
  const std::uint64_t wraps = (std::uint64_t{1} << 63) + 1;
  EXPECT_MSGID(
      call("putVaraInt", {ncid_, defVar("w", NC_INT, {t_, u_}), array<std::uint64_t>({0, 0}),
                          array<std::uint64_t>({wraps, wraps}), scalar<std::int32_t>(7)}),
      "countNotEqualToData", std::numeric_limits<long>::max(), 1);
  std::size_t length = 1;
  ASSERT_EQ(NC_NOERR, nc_inq_dimlen(ncid_, t_, &length));
  EXPECT_EQ(0u, length);
}

// User-defined types in the same file.
class UserTypes : public DataFile {};

// What netCDF-C or the library would misread: too narrow elements, missing strings, char for
// strings, bytes for text;
// also deep in a later record, after earlier records have their nested levels and texts.
TEST_F(UserTypes, VlenDataNetcdfWouldMisreadIsRefused) {
  nc_type texts = 0, ints = 0;
  ASSERT_EQ(NC_NOERR, nc_def_vlen(ncid_, "texts", NC_STRING, &texts));
  ASSERT_EQ(NC_NOERR, nc_def_vlen(ncid_, "ints", NC_INT, &ints));
  qvArrayPtr gap = createStringArray(2, 1);
  setStringMissing(gap.get(), 1);
  const std::tuple<nc_type, qvArrayPtr, std::string> cases[] = {
      {NC_STRING, cell(charRow("abc")), kBadType},
      {NC_CHAR, cell(zeros(qvINT8_CLASS, {3, 1})), kBadType},
      {texts,
       cell(cell(createStringArray(u"b\u00e9"), createStringArray(u"c")),
            cell(createStringArray(u"x"), std::move(gap))),
       "QUARNA:string:MissingNotSupported"},
      {ints,
       cell(cell(zeros(qvINT32_CLASS, {3, 1})),
            cell(zeros(qvINT32_CLASS, {2, 1}), zeros(qvDOUBLE_CLASS, {2, 1}))),
       kBadType},
  };
  for (const auto& [base, data, id] : cases)
    EXPECT_EQ(id, catchMsgId([&] { VlenRecords(ncid_, base, data.get()); })->id);
  // netCDF-C 4.9.0 took any user-defined type for a compound: a vlen crashed it.
  EXPECT_EQ("NC_EBADTYPE", statusOf([&] { call("inqCompoundField", {ncid_, ints, 0}); }));
  // HDF5 cannot store a vlen variable without fill values: the file would never close.
  const int v = defVar("v", ints, {y_});
  EXPECT_EQ("NC_EINVAL", statusOf([&] { call("defVarFill", {ncid_, v, true, cell()}); }));
}

// A read that fails half way, on a compound type inside the second record, releases the
// cells built for the first and everything netCDF-C allocated.
TEST_F(UserTypes, PartlyConvertedReadIsReleasedOnFailure) {
  nc_type compound = 0, ofCompound = 0, outer = 0;
  ASSERT_EQ(NC_NOERR, nc_def_compound(ncid_, sizeof(int), "c", &compound));
  ASSERT_EQ(NC_NOERR, nc_insert_compound(ncid_, compound, "x", 0, NC_INT));
  ASSERT_EQ(NC_NOERR, nc_def_vlen(ncid_, "vc", compound, &ofCompound));
  ASSERT_EQ(NC_NOERR, nc_def_vlen(ncid_, "vvc", ofCompound, &outer));
  const int var = defVar("v", outer, {y_});
  int value = 5;
  nc_vlen_t inner{1, &value}, records[2] = {{0, nullptr}, {1, &inner}};
  ASSERT_EQ(NC_NOERR, nc_put_var(ncid_, var, records));
  EXPECT_MSGID(call("getVarVlen", {ncid_, var}), "unrecognizedVarDatatype", compound);
}

}  // namespace
