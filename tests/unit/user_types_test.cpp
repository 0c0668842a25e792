// User-defined types against netCDF-C's own layout: compound data refused naming the field
// (an array of nested compounds and a vlen of opaque values inside one record), and
// variable-length data refused before netCDF-C sees it, with everything converted up to
// the failure released (the sanitizer build checks that).

#include "convert/vlen.hpp"
#include "test_support.hpp"

namespace {

using namespace test;

struct Inner {
  int a;
  short b[2];
};
struct Record {
  double t;
  Inner in[3];      // an array of nested compounds
  nc_vlen_t blobs;  // vlen of opaque(3)
};

// A netCDF-4 file made with netCDF-C, closed at the end.
class UserTypes : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(nc_create(dir_.file("u.nc").c_str(), NC_NETCDF4 | NC_CLOBBER, &ncid_), NC_NOERR);
  }
  void TearDown() override { nc_close(ncid_); }
  int defVar(const char* name, nc_type type, std::size_t n) {
    int dim = -1, var = -1;
    EXPECT_EQ(nc_def_dim(ncid_, name, n, &dim), NC_NOERR);
    EXPECT_EQ(nc_def_var(ncid_, name, type, 1, &dim, &var), NC_NOERR);
    return var;
  }
  ScratchDir dir_;
  int ncid_ = -1;
};

// Nested arrays gain dimensions in front; refusals name the field at any depth.
TEST_F(UserTypes, CompoundRecordsRefusedNamingTheField) {
  nc_type inner, blob, blobs, rec;
  nc_def_compound(ncid_, sizeof(Inner), "inner_t", &inner);
  nc_insert_compound(ncid_, inner, "a", offsetof(Inner, a), NC_INT);
  const int two = 2, three = 3;
  nc_insert_array_compound(ncid_, inner, "b", offsetof(Inner, b), NC_SHORT, 1, &two);
  nc_def_opaque(ncid_, 3, "blob_t", &blob);
  nc_def_vlen(ncid_, "blobs_t", blob, &blobs);
  nc_def_compound(ncid_, sizeof(Record), "rec_t", &rec);
  nc_insert_compound(ncid_, rec, "t", offsetof(Record, t), NC_DOUBLE);
  nc_insert_array_compound(ncid_, rec, "in", offsetof(Record, in), inner, 1, &three);
  nc_insert_compound(ncid_, rec, "blobs", offsetof(Record, blobs), blobs);
  const int var = defVar("r", rec, 2);
  const Record records[2] = {};
  ASSERT_EQ(nc_put_var(ncid_, var, records), NC_NOERR);

  const qvArrayPtr s = call1("getVar", {ncid_, var});
  auto* in = const_cast<qvArray*>(qvGetFieldByNumber(s.get(), 0, 1));
  auto* cells = const_cast<qvArray*>(qvGetFieldByNumber(s.get(), 0, 2));
  EXPECT_EQ(dimsOf(qvGetFieldByNumber(in, 0, 1)), (Dims{2, 3, 2}));
  qvSetFieldByNumber(in, 0, 1, zeros(qvINT16_CLASS, {2, 3, 1}));
  EXPECT_MSGID(call("putVar", {ncid_, var, s}), "QUARNA:imagesci:netcdf:dataElementCountMismatch",
               args("data.in.b", 12, 6));
  qvSetFieldByNumber(in, 0, 1, zeros(qvINT32_CLASS, {2, 3, 2}));
  EXPECT_MSGID(call("putVar", {ncid_, var, s}), "QUARNA:imagesci:netcdf:dataHasBadClass",
               args("data.in.b", "int16"));
  qvSetFieldByNumber(in, 0, 1, zeros(qvINT16_CLASS, {2, 3, 2}));
  qvSetCell(cells, 0, zeros(qvUINT8_CLASS, {4, 1}));
  EXPECT_MSGID(call("putVar", {ncid_, var, s}), "QUARNA:imagesci:netcdf:dataElementCountMismatch",
               args("data.blobs{}", 3, 4));
  EXPECT_MSGID(call("putVar", {ncid_, var, qvCreateStruct(Dims{1, 1}, {"t", "in", "x"})}),
               "QUARNA:imagesci:netcdf:dataFieldsMismatch", args("data", "rec_t", "t, in, blobs"));
}

// A column of strings, the last one missing when asked.
qvArrayPtr strings(std::initializer_list<std::u16string> texts, bool lastMissing = false) {
  qvArrayPtr s = createStringArray(texts.size(), 1);
  std::size_t i = 0;
  for (const auto& t : texts) setStringElement(s.get(), i++, t);
  if (lastMissing) setStringMissing(s.get(), i - 1);
  return s;
}

// What netCDF-C would misread: too narrow elements, missing strings, char for strings;
// also deep in a later record, after earlier records have their nested levels and texts.
TEST_F(UserTypes, VlenDataNetcdfWouldMisreadIsRefused) {
  nc_type texts = 0, ints = 0;
  ASSERT_EQ(NC_NOERR, nc_def_vlen(ncid_, "texts", NC_STRING, &texts));
  ASSERT_EQ(NC_NOERR, nc_def_vlen(ncid_, "ints", NC_INT, &ints));
  const char* badType = "QUARNA:imagesci:netcdf:argumentHasBadDatatype";
  const char* missing = "QUARNA:string:MissingNotSupported";
  const struct {
    nc_type base;
    qvArrayPtr data;
    const char* id;
  } cases[] = {
      {NC_STRING, cell(charRow("abc")), badType},
      {texts,
       cell(cell(strings({u"a", u"b\u00e9"}), strings({u"c"})),
            cell(strings({u"x"}), strings({u"d", u"e"}, true))),
       missing},
      {ints,
       cell(cell(zeros(qvINT32_CLASS, {3, 1})),
            cell(zeros(qvINT32_CLASS, {2, 1}), zeros(qvDOUBLE_CLASS, {2, 1}))),
       badType},
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.id, catchMsgId([&] { VlenRecords(ncid_, c.base, c.data.get()); })->id);

  // HDF5 cannot store a vlen variable without fill values: the file would never close.
  const int v = defVar("v", ints, 2);
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
  const int var = defVar("v", outer, 2);
  int value = 5;
  nc_vlen_t inner{1, &value};
  nc_vlen_t records[2] = {{0, nullptr}, {1, &inner}};
  ASSERT_EQ(NC_NOERR, nc_put_var(ncid_, var, records));
  EXPECT_MSGID(call("getVarVlen", {ncid_, var}), "QUARNA:imagesci:netcdf:unrecognizedVarDatatype",
               args(compound));
}

}  // namespace
