// Shapes, classes and reference counting of host arrays.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>
#include <vector>

#include "host_probe.hpp"
#include "qvhost/qvhost.hpp"
#include "test_support.hpp"

namespace {

using test::dimsOf;

struct ShapeCase {
  std::vector<std::uint64_t> given;
  std::vector<std::uint64_t> stored;
  std::size_t numel;
};

TEST(HostArrayShape, DimensionListsAreNormalised) {
  const std::vector<ShapeCase> cases = {
      {{}, {1, 1}, 1},           {{5}, {5, 1}, 5},
      {{0}, {0, 1}, 0},          {{2, 3}, {2, 3}, 6},
      {{2, 3, 1, 1}, {2, 3}, 6}, {{1, 1, 1}, {1, 1}, 1},
      {{2, 1, 4}, {2, 1, 4}, 8}, {{2, 3, 4, 1}, {2, 3, 4}, 24},
      {{3, 0, 2}, {3, 0, 2}, 0}, {{0, 0}, {0, 0}, 0},
  };
  for (const auto& c : cases) {
    auto a = matrix::detail::do_create_numeric(c.given, qvDOUBLE_CLASS, qvREAL);
    EXPECT_EQ(dimsOf(a.get()), c.stored) << "given " << c.given.size() << " extents";
    EXPECT_EQ(qvGetNumberOfElements(a.get()), c.numel);
    EXPECT_EQ(qvIsEmpty(a.get()), c.numel == 0);
    EXPECT_NE(qvGetData(a.get()), nullptr);  // even empty arrays have a block
  }
}

TEST(HostArrayShape, RowsColsArraysCompleteTheirListOnRequest) {
  auto a = createStringArray(std::uint64_t{3}, std::uint64_t{4});
  EXPECT_TRUE(a->dimsIncomplete);
  EXPECT_EQ(qvGetNumberOfElements(a.get()), 12u);
  EXPECT_EQ(dimsOf(a.get()), (std::vector<std::uint64_t>{3, 4}));
  EXPECT_FALSE(a->dimsIncomplete);
  EXPECT_EQ(qvGetNumberOfElements(a.get()), 12u);
}

TEST(HostArrayShape, ImpossibleSizesAreExhaustion) {
  const std::vector<std::uint64_t> huge = {std::uint64_t{1} << 40, std::uint64_t{1} << 40};
  EXPECT_THROW(matrix::detail::do_create_numeric(huge, qvDOUBLE_CLASS, qvREAL), std::bad_alloc);
  const std::vector<std::uint64_t> emptyHuge = {std::uint64_t{1} << 40, 0, std::uint64_t{1} << 40};
  auto a = matrix::detail::do_create_numeric(emptyHuge, qvDOUBLE_CLASS, qvREAL);
  EXPECT_TRUE(qvIsEmpty(a.get()));
}

TEST(HostArrayClass, EveryClassReadsBackThroughTheHeader) {
  const std::uint64_t dims[] = {2, 2};
  for (int c = qvLOGICAL_CLASS; c <= qvUINT64_CLASS; ++c) {
    const auto cls = static_cast<qvClassID>(c);
    if (cls == qvVOID_CLASS) continue;
    auto a = matrix::detail::do_create_uninitnumeric(dims, cls, qvREAL);
    EXPECT_EQ(qvGetClassID(a.get()), cls);
    EXPECT_EQ(qvIsNumeric(a.get()), qvIsNumericClassID(cls));
    EXPECT_LE(a->classTag, 16);
  }
  for (qvClassID cls : {qvSTRUCT_CLASS, qvFUNCTION_CLASS, qvOBJECT_CLASS}) {
    auto a = qvCreateOpaque(dims, cls);
    EXPECT_EQ(qvGetClassID(a.get()), cls);
    EXPECT_FALSE(qvIsNumeric(a.get()));
    EXPECT_EQ(qvGetData(a.get()), nullptr);
  }
  auto obj = qvCreateOpaque(dims, qvOBJECT_CLASS);
  EXPECT_EQ(obj->classTag, qvArray::kExtendedClassTag);
  auto str = createStringArray(u"x");
  EXPECT_EQ(str->classTag, qvArray::kExtendedClassTag);
  EXPECT_EQ(qvGetClassID(str.get()), qvSTRING_CLASS);
  EXPECT_FALSE(qvIsNumeric(str.get()));
}

TEST(HostArrayClass, CreationRefusesClassesWithoutPlainData) {
  const std::uint64_t dims[] = {1, 1};
  EXPECT_THROW(matrix::detail::do_create_numeric(dims, qvCELL_CLASS, qvREAL),
               std::invalid_argument);
  EXPECT_THROW(matrix::detail::do_create_numeric(dims, qvSTRING_CLASS, qvREAL),
               std::invalid_argument);
  EXPECT_THROW(qvCreateOpaque(dims, qvDOUBLE_CLASS), std::invalid_argument);
}

TEST(HostArrayQueries, ZeroFilledComplexAndPredicates) {
  const std::uint64_t dims[] = {3, 2};
  auto z = matrix::detail::do_create_numeric(dims, qvINT32_CLASS, qvCOMPLEX);
  ASSERT_TRUE(qvIsComplex(z.get()));
  ASSERT_NE(qvGetImagData(z.get()), nullptr);
  const auto* re = static_cast<const std::int32_t*>(qvGetData(z.get()));
  const auto* im = static_cast<const std::int32_t*>(qvGetImagData(z.get()));
  for (int i = 0; i < 6; ++i) EXPECT_EQ(re[i] | im[i], 0);

  const std::uint64_t one[] = {1, 1};
  auto flag = matrix::detail::do_create_numeric(one, qvLOGICAL_CLASS, qvREAL);
  EXPECT_TRUE(qvIsLogicalScalar(flag.get()));
  EXPECT_EQ(qvGetLogicals(flag.get()), qvGetData(flag.get()));
  EXPECT_EQ(qvGetLogicals(z.get()), nullptr);
  EXPECT_FALSE(qvIsLogicalScalar(z.get()));

  const std::uint64_t colDims[] = {3, 1};
  const std::uint64_t emptyRow[] = {0, 3};
  EXPECT_TRUE(qvIsCharVector(matrix::create("abc", 3).get()));
  EXPECT_TRUE(qvIsCharVector(matrix::create("", 0).get()));
  EXPECT_FALSE(
      qvIsCharVector(matrix::detail::do_create_numeric(colDims, qvCHAR_CLASS, qvREAL).get()));
  EXPECT_FALSE(
      qvIsCharVector(matrix::detail::do_create_numeric(emptyRow, qvCHAR_CLASS, qvREAL).get()));
  EXPECT_FALSE(
      qvIsCharVector(matrix::detail::do_create_numeric(one, qvUINT16_CLASS, qvREAL).get()));
}

TEST(HostArrayLifetime, SharedArraySurvivesOneRelease) {
  int destroyed = 0;
  qvArrayPtr first = probeArray(&destroyed);
  qvArrayPtr second = qvShareArray(first.get());
  EXPECT_EQ(first.get(), second.get());
  EXPECT_EQ(first->refCount.load(), 2);
  first.reset();
  EXPECT_EQ(destroyed, 0);
  EXPECT_EQ(second->refCount.load(), 1);
  second.reset();
  EXPECT_EQ(destroyed, 1);
  qvArrayDeleter()(nullptr);  // releasing nothing is allowed
  EXPECT_FALSE(qvShareArray(nullptr));
}

TEST(HostArrayLifetime, DestroyArrayIgnoresOtherReferences) {
  int destroyed = 0;
  qvArrayPtr a = probeArray(&destroyed);
  a->refCount.fetch_add(1);
  matrix::destroyArray(a.release());
  EXPECT_EQ(destroyed, 1);
}

}  // namespace
