// Host structs, and compound data against netCDF-C's own layout: an array of nested
// compounds and a vlen of opaque values inside one record, written natively and read
// through "getVar", and written through "putVar" and compared byte for byte natively.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <cstring>
#include <string>
#include <vector>

#include "test_support.hpp"

namespace {

using test::args;
using test::call;
using test::call1;
using test::dimsOf;
using test::valuesOf;

TEST(HostStruct, FieldsAreNamedOwnedAndReplaced) {
  qvArrayPtr s = qvCreateStruct(std::vector<std::uint64_t>{2, 1}, {"a", "b"});
  EXPECT_EQ(qvGetNumberOfFields(s.get()), 2u);
  EXPECT_STREQ(qvGetFieldNameByNumber(s.get(), 1), "b");
  EXPECT_EQ(qvGetFieldNameByNumber(s.get(), 2), nullptr);
  EXPECT_EQ(qvGetFieldByNumber(s.get(), 1, 0), nullptr);
  qvSetFieldByNumber(s.get(), 1, 0, test::scalar<double>(1));
  qvSetFieldByNumber(s.get(), 1, 0, test::scalar<double>(2));  // releases the first
  EXPECT_EQ(valuesOf<double>(qvGetFieldByNumber(s.get(), 1, 0)), std::vector<double>{2});
  EXPECT_THROW(qvSetFieldByNumber(s.get(), 2, 0, nullptr), std::out_of_range);
  EXPECT_THROW(qvCreateStruct(std::vector<std::uint64_t>{1, 1}, {"a", "a"}),
               std::invalid_argument);
  // Structs without fields, as hosts hand in values the library has no use for.
  EXPECT_EQ(qvGetNumberOfFields(test::structScalar().get()), 0u);
}

struct Inner {
  int a;
  short b[2];
};
struct Record {
  double t;
  Inner in[3];     // an array of nested compounds
  nc_vlen_t blobs;  // vlen of opaque(3)
};

class CompoundData : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = (std::filesystem::temp_directory_path() /
             ("netcdflib_compound_" + std::to_string(::getpid()) + ".nc"))
                .string();
    ASSERT_EQ(nc_create(path_.c_str(), NC_NETCDF4 | NC_CLOBBER, &ncid_), NC_NOERR);
    nc_type inner, blob, blobs;
    nc_def_compound(ncid_, sizeof(Inner), "inner_t", &inner);
    nc_insert_compound(ncid_, inner, "a", offsetof(Inner, a), NC_INT);
    const int two = 2, three = 3;
    nc_insert_array_compound(ncid_, inner, "b", offsetof(Inner, b), NC_SHORT, 1, &two);
    nc_def_opaque(ncid_, 3, "blob_t", &blob);
    nc_def_vlen(ncid_, "blobs_t", blob, &blobs);
    nc_def_compound(ncid_, sizeof(Record), "rec_t", &rec_);
    nc_insert_compound(ncid_, rec_, "t", offsetof(Record, t), NC_DOUBLE);
    nc_insert_array_compound(ncid_, rec_, "in", offsetof(Record, in), inner, 1, &three);
    nc_insert_compound(ncid_, rec_, "blobs", offsetof(Record, blobs), blobs);
    int dim;
    nc_def_dim(ncid_, "n", 2, &dim);
    ASSERT_EQ(nc_def_var(ncid_, "r", rec_, 1, &dim, &varid_), NC_NOERR);
    ASSERT_EQ(nc_enddef(ncid_), NC_NOERR);
  }
  void TearDown() override {
    nc_close(ncid_);
    std::filesystem::remove(path_);
  }

  std::string path_;
  int ncid_ = -1, varid_ = -1;
  nc_type rec_ = NC_NAT;
  unsigned char bytes_[6] = {1, 2, 3, 4, 5, 6};
  Record records_[2] = {};

  void fillRecords() {
    for (int i = 0; i < 2; ++i) {
      records_[i].t = i + 0.5;
      for (int j = 0; j < 3; ++j) {
        records_[i].in[j] = {10 * i + j, {short(100 * i + 2 * j), short(100 * i + 2 * j + 1)}};
      }
    }
    records_[0].blobs = {2, bytes_};
    records_[1].blobs = {0, nullptr};
  }
};

TEST_F(CompoundData, ReadsNestedArraysAndVlensInTheirForms) {
  fillRecords();
  ASSERT_EQ(nc_put_var(ncid_, varid_, records_), NC_NOERR);
  const qvArrayPtr s = call1("getVar", {ncid_, varid_});
  ASSERT_EQ(qvGetClassID(s.get()), qvSTRUCT_CLASS);
  EXPECT_EQ(valuesOf<double>(qvGetFieldByNumber(s.get(), 0, 0)), (std::vector<double>{0.5, 1.5}));
  const qvArray* in = qvGetFieldByNumber(s.get(), 0, 1);
  const qvArray* a = qvGetFieldByNumber(in, 0, 0);
  const qvArray* b = qvGetFieldByNumber(in, 0, 1);
  EXPECT_EQ(dimsOf(a), (test::Dims{3, 2}));
  EXPECT_EQ(valuesOf<std::int32_t>(a), (std::vector<std::int32_t>{0, 1, 2, 10, 11, 12}));
  EXPECT_EQ(dimsOf(b), (test::Dims{2, 3, 2}));
  EXPECT_EQ(valuesOf<std::int16_t>(b),
            (std::vector<std::int16_t>{0, 1, 2, 3, 4, 5, 100, 101, 102, 103, 104, 105}));
  const qvArray* blobs = qvGetFieldByNumber(s.get(), 0, 2);
  ASSERT_EQ(qvGetClassID(blobs), qvCELL_CLASS);
  EXPECT_EQ(dimsOf(qvGetCell(blobs, 0)), (test::Dims{3, 2}));
  EXPECT_EQ(valuesOf<std::uint8_t>(qvGetCell(blobs, 0)),
            (std::vector<std::uint8_t>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(qvGetNumberOfElements(qvGetCell(blobs, 1)), 0u);
}

TEST_F(CompoundData, WritesWhatNetcdfReadsBackByteForByte) {
  fillRecords();
  ASSERT_EQ(nc_put_var(ncid_, varid_, records_), NC_NOERR);
  const qvArrayPtr s = call1("getVar", {ncid_, varid_});
  // Into a second variable, read natively.
  ASSERT_EQ(nc_redef(ncid_), NC_NOERR);
  int dim, other;
  nc_def_dim(ncid_, "m", 2, &dim);
  ASSERT_EQ(nc_def_var(ncid_, "copy", rec_, 1, &dim, &other), NC_NOERR);
  ASSERT_EQ(nc_enddef(ncid_), NC_NOERR);
  call("putVar", {ncid_, other, s});
  Record back[2] = {};
  ASSERT_EQ(nc_get_var(ncid_, other, back), NC_NOERR);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(back[i].t, records_[i].t);
    EXPECT_EQ(std::memcmp(back[i].in, records_[i].in, sizeof back[i].in), 0);
    ASSERT_EQ(back[i].blobs.len, records_[i].blobs.len);
    if (back[i].blobs.len != 0) {
      EXPECT_EQ(std::memcmp(back[i].blobs.p, bytes_, 6), 0);
    }
  }
  EXPECT_EQ(nc_reclaim_data(ncid_, rec_, back, 2), NC_NOERR);
}

// Refusals name the field at any depth; nothing written, nothing leaked.
TEST_F(CompoundData, RefusesDataNamingTheField) {
  fillRecords();
  ASSERT_EQ(nc_put_var(ncid_, varid_, records_), NC_NOERR);
  const qvArrayPtr s = call1("getVar", {ncid_, varid_});
  qvArray* in = const_cast<qvArray*>(qvGetFieldByNumber(s.get(), 0, 1));
  qvSetFieldByNumber(in, 0, 1, test::zeros(qvINT16_CLASS, {2, 3, 1}));
  EXPECT_MSGID(call("putVar", {ncid_, varid_, s}),
               "QUARNA:imagesci:netcdf:dataElementCountMismatch", args("data.in.b", 12, 6));
  qvSetFieldByNumber(in, 0, 1, test::zeros(qvINT32_CLASS, {2, 3, 2}));
  EXPECT_MSGID(call("putVar", {ncid_, varid_, s}), "QUARNA:imagesci:netcdf:dataHasBadClass",
               args("data.in.b", "int16"));
  qvArray* blobs = const_cast<qvArray*>(qvGetFieldByNumber(s.get(), 0, 2));
  qvSetFieldByNumber(in, 0, 1, test::zeros(qvINT16_CLASS, {2, 3, 2}));
  qvSetCell(blobs, 0, test::zeros(qvUINT8_CLASS, {4, 1}));
  EXPECT_MSGID(call("putVar", {ncid_, varid_, s}),
               "QUARNA:imagesci:netcdf:dataElementCountMismatch", args("data.blobs{}", 3, 4));
  const qvArrayPtr renamed = qvCreateStruct(std::vector<std::uint64_t>{1, 1}, {"t", "in", "x"});
  EXPECT_MSGID(call("putVar", {ncid_, varid_, renamed}),
               "QUARNA:imagesci:netcdf:dataFieldsMismatch", args("data", "rec_t", "t, in, blobs"));
}

// Records larger than a read block: rows of 3.2 MB, read whole and strided, land in order.
TEST_F(CompoundData, ReadsRecordsBlockByBlock) {
  struct Pair {
    double t;
    int q;
  };
  ASSERT_EQ(nc_redef(ncid_), NC_NOERR);
  nc_type pair;
  nc_def_compound(ncid_, sizeof(Pair), "pair_t", &pair);
  nc_insert_compound(ncid_, pair, "t", offsetof(Pair, t), NC_DOUBLE);
  nc_insert_compound(ncid_, pair, "q", offsetof(Pair, q), NC_INT);
  const std::size_t rows = 3, cols = 200000;
  int dims[2], var;
  nc_def_dim(ncid_, "rows", rows, &dims[0]);
  nc_def_dim(ncid_, "cols", cols, &dims[1]);
  ASSERT_EQ(nc_def_var(ncid_, "big", pair, 2, dims, &var), NC_NOERR);
  ASSERT_EQ(nc_enddef(ncid_), NC_NOERR);
  std::vector<Pair> data(rows * cols);
  for (std::size_t i = 0; i < data.size(); ++i) data[i] = {0.5 * double(i), int(i)};
  ASSERT_EQ(nc_put_var(ncid_, var, data.data()), NC_NOERR);
  const qvArrayPtr whole = call1("getVar", {ncid_, var});
  const qvArrayPtr strided = call1("getVars", {ncid_, var, test::array<double>({0, 0}, {1, 2}),
                                               test::array<double>({double(cols), 2}, {1, 2}),
                                               test::array<double>({1, 2}, {1, 2})});
  EXPECT_EQ(dimsOf(qvGetFieldByNumber(whole.get(), 0, 0)), (test::Dims{cols, rows}));
  const auto t = valuesOf<double>(qvGetFieldByNumber(whole.get(), 0, 0));
  const auto q = valuesOf<std::int32_t>(qvGetFieldByNumber(whole.get(), 0, 1));
  const auto q2 = valuesOf<std::int32_t>(qvGetFieldByNumber(strided.get(), 0, 1));
  ASSERT_EQ(q.size(), rows * cols);
  ASSERT_EQ(q2.size(), 2 * cols);
  for (std::size_t i = 0; i < q.size(); ++i) {
    ASSERT_EQ(t[i], 0.5 * double(i));
    ASSERT_EQ(q[i], int(i));
  }
  for (std::size_t j = 0; j < cols; ++j) ASSERT_EQ(q2[cols + j], int(2 * cols + j));
}

}  // namespace
