// START/COUNT/STRIDE vectors and the dimension-id and chunk-size rows.
#include <gtest/gtest.h>

#include <boost/numeric/conversion/converter_policies.hpp>
#include <cmath>
#include <cstring>
#include <limits>

#include "convert/index.hpp"
#include "test_support.hpp"

namespace {

using test::args;
using test::array;
using Sizes = IndexList;
using Strides = StrideList;

constexpr const char* kNotFinite = "QUARNA:imagesci:netcdf:indexArgumentNotFinite";

enum class Outcome { Ok, Negative, Positive };

template <class F>
Outcome overflowOf(F&& f) {
  try {
    f();
  } catch (const boost::numeric::negative_overflow&) {
    return Outcome::Negative;
  } catch (const boost::numeric::positive_overflow&) {
    return Outcome::Positive;
  }
  return Outcome::Ok;
}

TEST(IndexVector, EveryNumericClassIsReversedIntoNetcdfOrder) {
  const Sizes expected{5, 0, 2};
  for (const auto& v : {array<double>({2.9, -0.5, 5}), array<float>({2.5f, 0, 5}),
                        array<std::int8_t>({2, 0, 5}), array<std::uint8_t>({2, 0, 5}),
                        array<std::int16_t>({2, 0, 5}), array<std::uint16_t>({2, 0, 5}),
                        array<std::int32_t>({2, 0, 5}), array<std::uint32_t>({2, 0, 5}),
                        array<std::int64_t>({2, 0, 5}), array<std::uint64_t>({2, 0, 5})}) {
    EXPECT_EQ(expected, getIndexVector(v.get(), "START")) << qvGetClassID(v.get());
  }
  // Shape does not matter: a column is read in linear order too.
  EXPECT_EQ(expected, getIndexVector(array<double>({2, 0, 5}, {3, 1}).get(), "COUNT"));
  EXPECT_EQ((Strides{-1, 3}), getStrideVector(array<std::int64_t>({3, -1}).get(), "STRIDE"));
}

TEST(IndexVector, RangeBounds) {
  const double two64 = 18446744073709551616.0, two63 = 9223372036854775808.0;
  const struct {
    qvArrayPtr value;
    Outcome start, stride;
  } cases[] = {
      {array<double>({-0.99}), Outcome::Ok, Outcome::Ok},
      {array<double>({-1}), Outcome::Negative, Outcome::Ok},
      {array<double>({two64}), Outcome::Positive, Outcome::Positive},
      {array<double>({two63}), Outcome::Ok, Outcome::Positive},
      {array<std::uint64_t>({std::uint64_t{1} << 63}), Outcome::Ok, Outcome::Positive},
  };
  int k = 0;
  for (const auto& c : cases) {
    EXPECT_EQ(c.start, overflowOf([&] { getIndexVector(c.value.get(), "START"); })) << k;
    EXPECT_EQ(c.stride, overflowOf([&] { getStrideVector(c.value.get(), "STRIDE"); })) << k;
    ++k;
  }
}

TEST(IndexVector, NonFiniteEmptyAndNonNumeric) {
  const double nan = std::nan(""), inf = HUGE_VAL;
  // Finiteness is judged before any element overflows.
  for (const auto& v : {array<double>({-5, nan}), array<double>({1, -inf}),
                        array<float>({HUGE_VALF}), array<float>({std::nanf("")})}) {
    EXPECT_MSGID(getIndexVector(v.get(), "START"), kNotFinite, args());
    EXPECT_MSGID(getStrideVector(v.get(), "STRIDE"), kNotFinite, args());
  }
  // Emptiness comes before the class.
  for (const auto& empty : {test::zeros(qvDOUBLE_CLASS, {0, 0}), test::zeros(qvCHAR_CLASS, {1, 0}),
                            test::zeros(qvLOGICAL_CLASS, {0, 1})}) {
    EXPECT_MSGID(getIndexVector(empty.get(), "START"), "QUARNA:imagesci:netcdf:argumentIsEmpty",
                 args("START"));
  }
  for (const auto& bad : {test::charRow("1"), test::logicalScalar(true), test::emptyCell(),
                          test::stringScalar(u"1"), test::structScalar()}) {
    EXPECT_MSGID(getIndexVector(bad.get(), "COUNT"),
                 "QUARNA:imagesci:netcdf:argumentHasBadDatatype", args("COUNT"));
  }
}

TEST(DimensionIdRow, ReversedTruncatedAndChecked) {
  EXPECT_EQ((std::vector<int>{3, 1, 0}),
            getDimensionIdRow(array<double>({0.7, 1, 3.9}).get(), "dimids"));
  EXPECT_TRUE(getDimensionIdRow(test::zeros(qvDOUBLE_CLASS, {0, 0}).get(), "dimids").empty());
  EXPECT_MSGID(getDimensionIdRow(test::zeros(qvINT32_CLASS, {0, 0}).get(), "dimids"),
               "QUARNA:imagesci:netcdf:badRowDatatype", args("dimids"));
  EXPECT_MSGID(getDimensionIdRow(array<std::int32_t>({0, 1}).get(), "dimids"),
               "QUARNA:imagesci:netcdf:badRowDatatype", args("dimids"));
  EXPECT_MSGID(getDimensionIdRow(array<double>({0, std::nan("")}).get(), "dimids"),
               "QUARNA:imagesci:netcdf:invalidNaNInfForIntegerType", args("dimids"));
  EXPECT_MSGID(getDimensionIdRow(test::zeros(qvDOUBLE_CLASS, {1, 1025}).get(), "dimids"),
               "QUARNA:imagesci:netcdf:rowLengthOutOfBounds", args("dimids", 1024));
  EXPECT_EQ(1024u,
            getDimensionIdRow(test::zeros(qvDOUBLE_CLASS, {1, 1024}).get(), "dimids").size());
  // The class check comes first, so a long row of another class is a datatype error.
  EXPECT_MSGID(getDimensionIdRow(test::zeros(qvINT16_CLASS, {1, 1025}).get(), "dimids"),
               "QUARNA:imagesci:netcdf:badRowDatatype", args("dimids"));
}

TEST(DimensionIdRow, NonDoubleRowThatReadsAsNaNFailsAsNonFinite) {
  std::int64_t nanBits = 0;
  const double nan = std::nan("");
  std::memcpy(&nanBits, &nan, sizeof nan);
  EXPECT_MSGID(getDimensionIdRow(array<std::int64_t>({nanBits}).get(), "dimids"),
               "QUARNA:imagesci:netcdf:invalidNaNInfForIntegerType", args("dimids"));
  // Too few bytes for even one double: nothing is read past the data.
  EXPECT_MSGID(getChunkSizeRow(array<std::uint8_t>({0xFF, 0xFF}).get(), "chunk dims"),
               "QUARNA:imagesci:netcdf:badRowDatatype", args("chunk dims"));
}

TEST(ChunkSizeRow, TopBitAndNegativeValuesWrap) {
  const double two63 = 9223372036854775808.0;
  EXPECT_EQ((std::vector<std::size_t>{20, 10}),
            getChunkSizeRow(array<double>({10.9, 20}).get(), "chunk dims"));
  EXPECT_EQ((std::vector<std::size_t>{(std::size_t{1} << 63) + 2048, ~std::size_t{0}}),
            getChunkSizeRow(array<double>({-1, two63 + 2048}).get(), "chunk dims"));
  EXPECT_MSGID(getChunkSizeRow(array<double>({HUGE_VAL}).get(), "chunk dims"),
               "QUARNA:imagesci:netcdf:invalidNaNInfForIntegerType", args("chunk dims"));
}

}  // namespace
