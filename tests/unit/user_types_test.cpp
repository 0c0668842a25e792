// User-defined types against netCDF-C's own layout: an array of nested compounds and a vlen
// of opaque values inside one record, read through "getVar" and written back byte for
// byte; and variable-length data refused before netCDF-C sees it, with everything
// converted up to the failure released (the sanitizer build checks that).

#include <cstring>
#include <numeric>

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

TEST_F(UserTypes, CompoundRecordsReadWriteBackAndRefuseNamingTheField) {
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
  const int var = defVar("r", rec, 2), copy = defVar("copy", rec, 2);
  unsigned char bytes[6] = {1, 2, 3, 4, 5, 6};
  Record records[2] = {};
  for (int i = 0; i < 2; ++i) {
    records[i].t = i + 0.5;
    for (int j = 0; j < 3; ++j)
      records[i].in[j] = {10 * i + j, {short(100 * i + 2 * j), short(100 * i + 2 * j + 1)}};
  }
  records[0].blobs = {2, bytes};
  ASSERT_EQ(nc_put_var(ncid_, var, records), NC_NOERR);

  const qvArrayPtr s = call1("getVar", {ncid_, var});
  const qvArray* in = qvGetFieldByNumber(s.get(), 0, 1);
  const qvArray* cells = qvGetFieldByNumber(s.get(), 0, 2);
  // Nested arrays gain dimensions in front; opaque values are byte columns.
  EXPECT_EQ(dimsOf(qvGetFieldByNumber(in, 0, 0)), (Dims{3, 2}));
  EXPECT_EQ(dimsOf(qvGetFieldByNumber(in, 0, 1)), (Dims{2, 3, 2}));
  EXPECT_EQ(valuesOf<std::int16_t>(qvGetFieldByNumber(in, 0, 1)),
            (std::vector<std::int16_t>{0, 1, 2, 3, 4, 5, 100, 101, 102, 103, 104, 105}));
  EXPECT_EQ(dimsOf(qvGetCell(cells, 0)), (Dims{3, 2}));
  EXPECT_EQ(qvGetNumberOfElements(qvGetCell(cells, 1)), 0u);

  call("putVar", {ncid_, copy, s});
  Record back[2] = {};
  ASSERT_EQ(nc_get_var(ncid_, copy, back), NC_NOERR);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(back[i].t, records[i].t);
    EXPECT_EQ(std::memcmp(back[i].in, records[i].in, sizeof back[i].in), 0);
    ASSERT_EQ(back[i].blobs.len, records[i].blobs.len);
  }
  EXPECT_EQ(std::memcmp(back[0].blobs.p, bytes, 6), 0);
  EXPECT_EQ(nc_reclaim_data(ncid_, rec, back, 2), NC_NOERR);

  // Refusals name the field at any depth.
  auto* b = const_cast<qvArray*>(in);
  qvSetFieldByNumber(b, 0, 1, zeros(qvINT16_CLASS, {2, 3, 1}));
  EXPECT_MSGID(call("putVar", {ncid_, var, s}), "QUARNA:imagesci:netcdf:dataElementCountMismatch",
               args("data.in.b", 12, 6));
  qvSetFieldByNumber(b, 0, 1, zeros(qvINT32_CLASS, {2, 3, 2}));
  EXPECT_MSGID(call("putVar", {ncid_, var, s}), "QUARNA:imagesci:netcdf:dataHasBadClass",
               args("data.in.b", "int16"));
  qvSetFieldByNumber(b, 0, 1, zeros(qvINT16_CLASS, {2, 3, 2}));
  qvSetCell(const_cast<qvArray*>(cells), 0, zeros(qvUINT8_CLASS, {4, 1}));
  EXPECT_MSGID(call("putVar", {ncid_, var, s}), "QUARNA:imagesci:netcdf:dataElementCountMismatch",
               args("data.blobs{}", 3, 4));
  EXPECT_MSGID(call("putVar", {ncid_, var, qvCreateStruct(Dims{1, 1}, {"t", "in", "x"})}),
               "QUARNA:imagesci:netcdf:dataFieldsMismatch", args("data", "rec_t", "t, in, blobs"));
}

// Records larger than a read block (rows of 3.2 MB), read whole and strided, land in order.
TEST_F(UserTypes, CompoundRecordsAreReadBlockByBlock) {
  struct Pair {
    double t;
    int q;
  };
  nc_type pair;
  nc_def_compound(ncid_, sizeof(Pair), "pair_t", &pair);
  nc_insert_compound(ncid_, pair, "t", offsetof(Pair, t), NC_DOUBLE);
  nc_insert_compound(ncid_, pair, "q", offsetof(Pair, q), NC_INT);
  const std::size_t rows = 3, cols = 200000;
  int dims[2], var;
  nc_def_dim(ncid_, "rows", rows, &dims[0]);
  nc_def_dim(ncid_, "cols", cols, &dims[1]);
  ASSERT_EQ(nc_def_var(ncid_, "big", pair, 2, dims, &var), NC_NOERR);
  std::vector<Pair> data(rows * cols);
  for (std::size_t i = 0; i < data.size(); ++i) data[i] = {0.5 * double(i), int(i)};
  ASSERT_EQ(nc_put_var(ncid_, var, data.data()), NC_NOERR);
  const qvArrayPtr whole = call1("getVar", {ncid_, var});
  const qvArrayPtr strided = call1(
      "getVars",
      {ncid_, var, array<double>({0, 0}), array<double>({double(cols), 2}), array<double>({1, 2})});
  EXPECT_EQ(dimsOf(qvGetFieldByNumber(whole.get(), 0, 0)), (Dims{cols, rows}));
  const auto t = valuesOf(qvGetFieldByNumber(whole.get(), 0, 0));
  std::vector<std::int32_t> q(data.size());
  std::iota(q.begin(), q.end(), 0);
  EXPECT_TRUE(std::ranges::equal(t, q, {}, {}, [](int i) { return 0.5 * i; }));
  EXPECT_TRUE(q == valuesOf<std::int32_t>(qvGetFieldByNumber(whole.get(), 0, 1)));
  q.erase(q.begin() + cols, q.begin() + 2 * cols);
  EXPECT_TRUE(q == valuesOf<std::int32_t>(qvGetFieldByNumber(strided.get(), 0, 1)));
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
