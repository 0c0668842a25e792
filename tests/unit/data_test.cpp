// Variable data through the entry point: whole and subset reads and writes of every
// type, their shapes, their checks in order, and what netCDF-C stores.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <cstring>
#include <string>

#include "convert/types.hpp"
#include "test_support.hpp"

namespace {

using test::args;
using test::array;
using test::callGateway;
using test::charRow;
using test::Dims;
using test::dimsOf;
using test::number;
using test::scalar;
using test::valuesOf;

constexpr const char* kLibraryFailure = "QUARNA:imagesci:netcdf:libraryFailure";

const char* kindName(DataKind k) {
  static const char* const names[] = {"Double", "Float", "Int64",  "Uint64", "Int",
                                      "Uint",   "Short", "Ushort", "Schar",  "Uchar",
                                      "Ubyte",  "Text",  "String", "Vlen"};
  return names[static_cast<int>(k)];
}

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
  qvArrayPtr call(const std::string& op, int varid,
                  std::initializer_list<const qvArray*> rest = {}) {
    const qvArrayPtr vid = scalar<double>(varid);
    std::vector<const qvArray*> all{id_.get(), vid.get()};
    all.insert(all.end(), rest);
    const qvArrayPtr name = charRow(op);
    all.insert(all.begin(), name.get());
    test::Outputs out;
    netcdflib(kNetcdflibMaxOutputs, out.data(), static_cast<int>(all.size()), all.data());
    return std::move(out[0]);
  }

  test::ScratchDir dir_;
  int ncid_ = -1, x_ = -1, y_ = -1, t_ = -1;
  qvArrayPtr id_;
};

TEST_F(DataFile, EveryNumericTypeRoundTripsWholeAndInSubsets) {
  for (int k = 0; k <= static_cast<int>(DataKind::Uchar); ++k) {
    visitNumericKind(static_cast<DataKind>(k), [&](auto traits) {
      using Traits = decltype(traits);
      using T = typename Traits::Element;
      const std::string type = kindName(static_cast<DataKind>(k));
      const int varid = defVar("v" + type, Traits::ncType, {y_, x_});
      std::vector<T> values{1, 2, 3, 4, 5, 6};
      qvArrayPtr data = matrix::detail::do_create_numeric(Dims{3, 2}, Traits::hostClass, qvREAL);
      std::memcpy(qvGetData(data.get()), values.data(), sizeof(T) * values.size());

      call("putVar" + type, varid, {data.get()});
      const qvArrayPtr whole = call("getVar" + type, varid);
      EXPECT_EQ(Traits::hostClass, qvGetClassID(whole.get())) << type;
      EXPECT_EQ((Dims{3, 2}), dimsOf(whole)) << type;
      EXPECT_EQ(values, valuesOf<T>(whole)) << type;

      // Host (1, 1) is netCDF (1, 1): the fifth element in both orders.
      const qvArrayPtr start = array<double>({1, 1}), count = array<double>({2, 1});
      EXPECT_EQ(std::vector<T>{5}, valuesOf<T>(call("getVar1" + type, varid, {start.get()})))
          << type;
      EXPECT_EQ((std::vector<T>{5, 6}),
                valuesOf<T>(call("getVara" + type, varid, {start.get(), count.get()})));
      qvArrayPtr two = matrix::detail::do_create_numeric(Dims{1, 2}, Traits::hostClass, qvREAL);
      static_cast<T*>(qvGetData(two.get()))[1] = 9;
      const std::string putVar1 = type == "Uint64" ? "putVar1UInt64"
                                  : type == "Uint" ? "putVar1UInt"
                                                   : "putVar1" + type;
      call("putVara" + type, varid, {start.get(), count.get(), two.get()});
      const qvArrayPtr one =
          matrix::detail::do_create_numeric(Dims{1, 1}, Traits::hostClass, qvREAL);
      const qvArrayPtr origin = array<double>({0, 0});
      call(putVar1, varid, {origin.get(), one.get()});
      EXPECT_EQ((std::vector<T>{0, 2, 3, 4, 0, 9}), valuesOf<T>(call("getVar" + type, varid)))
          << type;
    });
  }
}

TEST_F(DataFile, WholeReadShapes) {
  const int scalarVar = defVar("s", NC_DOUBLE, {});
  const int column = defVar("c", NC_DOUBLE, {x_});
  const int records = defVar("r", NC_SHORT, {t_, x_});
  int z = 0;
  ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, "z", 4, &z));
  const int cube = defVar("cube", NC_DOUBLE, {y_, x_, z});
  EXPECT_EQ((Dims{1, 1}), dimsOf(call("getVarDouble", scalarVar)));
  EXPECT_EQ((Dims{3, 1}), dimsOf(call("getVarDouble", column)));
  EXPECT_EQ((Dims{4, 3, 2}), dimsOf(call("getVarDouble", cube)));
  const qvArrayPtr empty = call("getVarShort", records);
  EXPECT_EQ((Dims{0, 0}), dimsOf(empty));
  EXPECT_EQ(qvINT16_CLASS, qvGetClassID(empty.get()));
}

TEST_F(DataFile, HostOrderIsReversedNetcdfOrder) {
  const int varid = defVar("m", NC_DOUBLE, {y_, x_});
  const qvArrayPtr data = array<double>({11, 21, 31, 12, 22, 32}, {3, 2});
  call("putVarDouble", varid, {data.get()});
  double stored[2][3] = {};
  ASSERT_EQ(NC_NOERR, nc_get_var_double(ncid_, varid, &stored[0][0]));
  // Host (i, j) is netCDF (j, i).
  EXPECT_EQ(21, stored[0][1]);
  EXPECT_EQ(12, stored[1][0]);
  EXPECT_EQ(32, stored[1][2]);
}

TEST_F(DataFile, TextIsRawBytesAndStringsAreUtf8) {
  const int text = defVar("text", NC_CHAR, {x_});
  const qvArrayPtr chars = charRow(u"a\u00e9\u0101");
  call("putVarText", text, {chars.get()});
  char bytes[3] = {};
  ASSERT_EQ(NC_NOERR, nc_get_var_text(ncid_, text, bytes));
  EXPECT_EQ(std::string("a\xE9\x01", 3), std::string(bytes, 3));
  EXPECT_EQ(u"a\uFFE9\u0001", test::charText(call("getVarText", text).get()));

  const int strings = defVar("strings", NC_STRING, {y_});
  qvArrayPtr s = createStringArray(2, 1);
  setStringElement(s.get(), 0, u"caf\u00e9");
  call("putVarString", strings, {s.get()});
  const char* stored[2] = {};
  ASSERT_EQ(NC_NOERR, nc_get_var_string(ncid_, strings, const_cast<char**>(stored)));
  EXPECT_STREQ("caf\xC3\xA9", stored[0]);
  EXPECT_STREQ("", stored[1]);
  nc_free_string(2, const_cast<char**>(stored));
  const qvArrayPtr back = call("getVarString", strings);
  EXPECT_EQ(u"caf\u00e9", getString(back.get()).at(0));

  setStringMissing(s.get(), 1);
  EXPECT_MSGID(call("putVarString", strings, {s.get()}), "QUARNA:string:MissingNotSupported",
               args());
}

// Octave has no missing strings, so only here: a missing element anywhere fails every
// string write before netCDF-C is called, which would otherwise have grown the record
// dimension.
TEST_F(DataFile, MissingStringFailsSubsetWritesBeforeNetcdf) {
  const int records = defVar("records", NC_STRING, {t_});
  qvArrayPtr one = createStringArray(1, 1), two = createStringArray(2, 1);
  setStringMissing(one.get(), 0);
  setStringElement(two.get(), 0, u"caf\u00e9");
  setStringMissing(two.get(), 1);
  const qvArrayPtr start = array<double>({3}), count = array<double>({2}),
                   stride = array<double>({2});
  const char* missing = "QUARNA:string:MissingNotSupported";
  EXPECT_MSGID(call("putVar1String", records, {start.get(), one.get()}), missing, args());
  EXPECT_MSGID(call("putVaraString", records, {start.get(), count.get(), two.get()}), missing,
               args());
  EXPECT_MSGID(call("putVarsString", records, {start.get(), count.get(), stride.get(), two.get()}),
               missing, args());
  std::size_t length = 1;
  ASSERT_EQ(NC_NOERR, nc_inq_dimlen(ncid_, t_, &length));
  EXPECT_EQ(0u, length);
}

TEST_F(DataFile, VlenWholeAndSubset) {
  nc_type ragged = 0;
  ASSERT_EQ(NC_NOERR, nc_def_vlen(ncid_, "ragged", NC_INT, &ragged));
  const int varid = defVar("vl", ragged, {x_});
  qvArrayPtr cells = matrix::detail::do_create_cell(Dims{3, 1});
  qvSetCell(cells.get(), 0, array<std::int32_t>({1, 2, 3}, {3, 1}));
  qvSetCell(cells.get(), 2, array<std::int32_t>({4}, {1, 1}));
  call("putVarVlen", varid, {cells.get()});
  const qvArrayPtr back = call("getVarVlen", varid);
  EXPECT_EQ((Dims{3, 1}), dimsOf(back));
  EXPECT_EQ((std::vector<std::int32_t>{1, 2, 3}),
            valuesOf<std::int32_t>((qvGetCell(back.get(), 0))));
  EXPECT_EQ((Dims{0, 0}), dimsOf((qvGetCell(back.get(), 1))));

  const qvArrayPtr start = array<double>({2}), count = array<double>({1});
  qvArrayPtr one = matrix::detail::do_create_cell(Dims{1, 1});
  qvSetCell(one.get(), 0, array<std::int32_t>({7, 8}, {2, 1}));
  call("putVaraVlen", varid, {start.get(), count.get(), one.get()});
  const qvArrayPtr element = call("getVar1Vlen", varid, {start.get()});
  EXPECT_EQ((std::vector<std::int32_t>{7, 8}),
            valuesOf<std::int32_t>((qvGetCell(element.get(), 0))));

  const int plain = defVar("plain", NC_STRING, {x_});
  EXPECT_MSGID(call("getVarVlen", plain), "QUARNA:imagesci:netcdf:unrecognizedVarDatatype",
               args(NC_STRING));
}

TEST_F(DataFile, WholeWriteChecksInOrder) {
  const int records = defVar("r", NC_DOUBLE, {t_, x_});
  const int fixed = defVar("f", NC_DOUBLE, {y_, x_});
  const qvArrayPtr none = test::zeros(qvDOUBLE_CLASS, {0, 0}),
                   five = test::zeros(qvDOUBLE_CLASS, {5, 1});
  EXPECT_MSGID(call("putVarDouble", 99, {none.get()}), "QUARNA:imagesci:netcdf:emptyVariableData",
               args());
  EXPECT_MSGID(call("putVarDouble", records, {five.get()}),
               "QUARNA:imagesci:netcdf:incompleteArgsForUnlimitedDimensions", args());
  EXPECT_MSGID(call("putVarDouble", fixed, {five.get()}), "QUARNA:imagesci:netcdf:dataSizeMismatch",
               args());
  // Shapes are not compared, classes are: the block would be misread.
  call("putVarDouble", fixed, {test::zeros(qvDOUBLE_CLASS, {6, 1}).get()});
  EXPECT_MSGID(call("putVarDouble", fixed, {test::zeros(qvINT8_CLASS, {6, 1}).get()}),
               "QUARNA:imagesci:netcdf:argumentHasBadDatatype", args("data"));
  EXPECT_MSGID(call("putVarDouble", 99, {five.get()}), kLibraryFailure,
               args("putVarDouble", "NC_ENOTVAR", "Variable not found"));
}

TEST_F(DataFile, SubsetShapesStridesAndLengthChecks) {
  int z = 0;
  ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, "ten", 10, &z));
  const int line = defVar("line", NC_DOUBLE, {z});
  const qvArrayPtr ramp = array<double>({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, {10, 1});
  call("putVarDouble", line, {ramp.get()});
  const qvArrayPtr zero = array<double>({0}), five = array<double>({5}), two = array<double>({2});
  EXPECT_EQ((std::vector<double>{0, 2, 4, 6, 8}),
            valuesOf<double>(call("getVarsDouble", line, {zero.get(), five.get(), two.get()})));

  const int grid = defVar("grid", NC_INT, {y_, x_});
  const qvArrayPtr origin = array<double>({0, 0});
  EXPECT_EQ((Dims{1, 1}), dimsOf(call("getVar1Int", grid, {origin.get()})));
  EXPECT_EQ((Dims{3, 2}),
            dimsOf(call("getVaraInt", grid, {origin.get(), array<double>({3, 2}).get()})));
  EXPECT_EQ((Dims{3, 0}),
            dimsOf(call("getVaraInt", grid, {origin.get(), array<double>({3, 0}).get()})));

  const qvArrayPtr longStart = array<double>({0, 0, 0}), shortCount = array<double>({1});
  EXPECT_MSGID(call("getVaraInt", grid, {longStart.get(), shortCount.get()}),
               "QUARNA:imagesci:netcdf:badIndexArgumentLength", args("START", "grid", 2, 3));
  // Reads report START's length for every vector, writes the faulty vector's own.
  EXPECT_MSGID(call("getVaraInt", grid, {origin.get(), shortCount.get()}),
               "QUARNA:imagesci:netcdf:badIndexArgumentLength", args("COUNT", "grid", 2, 2));
  const qvArrayPtr six = test::zeros(qvINT32_CLASS, {6, 1});
  EXPECT_MSGID(call("putVaraInt", grid, {origin.get(), shortCount.get(), six.get()}),
               "QUARNA:imagesci:netcdf:badIndexArgumentLength", args("COUNT", "grid", 2, 1));
  EXPECT_MSGID(call("putVarsInt", grid,
                    {origin.get(), array<double>({3, 2}).get(), shortCount.get(), six.get()}),
               "QUARNA:imagesci:netcdf:badIndexArgumentLength", args("STRIDE", "grid", 2, 1));
}

TEST_F(DataFile, SubsetWritesCountAndGrow) {
  const int records = defVar("r", NC_DOUBLE, {t_, x_});
  const qvArrayPtr start = array<double>({0, 4}), count = array<double>({3, 1});
  EXPECT_MSGID(call("putVar1Double", records, {start.get(), array<double>({1, 2}).get()}),
               "QUARNA:imagesci:netcdf:countNotEqualToData", args(1, 2));
  EXPECT_MSGID(call("putVara"
                    "Double",
                    records, {start.get(), count.get(), test::zeros(qvDOUBLE_CLASS, {0, 3}).get()}),
               "QUARNA:imagesci:netcdf:emptyVariableData", args());
  call("putVaraDouble", records, {start.get(), count.get(), array<double>({1, 2, 3}).get()});
  std::size_t length = 0;
  ASSERT_EQ(NC_NOERR, nc_inq_dimlen(ncid_, t_, &length));
  EXPECT_EQ(5u, length);
  EXPECT_EQ((Dims{3, 5}), dimsOf(call("getVarDouble", records)));

  const qvArrayPtr outside = array<double>({0, 7});
  const int fixed = defVar("f", NC_DOUBLE, {y_, x_});
  EXPECT_MSGID(call("putVar1Double", fixed, {outside.get(), scalar<double>(1).get()}),
               kLibraryFailure,
               args("putVar1Double", "NC_EINVALCOORDS", "Index exceeds dimension bound"));
  EXPECT_MSGID(call("putVar1Uint64", fixed, {outside.get(), scalar<double>(1).get()}),
               "QUARNA:imagesci:netcdf:unrecognizedOperation", args("putVar1Uint64"));
}

TEST_F(DataFile, NetcdfConvertsAndReportsRange) {
  const int text = defVar("t", NC_CHAR, {x_});
  EXPECT_MSGID(call("getVarDouble", text), kLibraryFailure,
               args("getVarDouble", "NC_ECHAR", "Attempt to convert between text & numbers"));
  const int bytes = defVar("b", NC_BYTE, {x_});
  EXPECT_MSGID(call("putVarDouble", bytes, {array<double>({1, 300, 2}).get()}), kLibraryFailure,
               args("putVarDouble", "NC_ERANGE", "Numeric conversion not representable"));
}

}  // namespace
