// Cell arrays own their elements.
#include <gtest/gtest.h>

#include "host_probe.hpp"
#include "qvhost/qvhost.hpp"

namespace {

TEST(HostCells, NewCellHasOnlyEmptyElements) {
  const std::uint64_t dims[] = {2, 3};
  auto cell = matrix::detail::do_create_cell(dims);
  ASSERT_EQ(qvGetClassID(cell.get()), qvCELL_CLASS);
  ASSERT_EQ(qvGetNumberOfElements(cell.get()), 6u);
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(qvGetCell(cell.get(), i), nullptr);
  EXPECT_EQ(qvGetCell(cell.get(), 6), nullptr);
  auto empty = matrix::detail::do_create_cell(matrix::DimSpan());
  EXPECT_EQ(qvGetNumberOfElements(empty.get()), 1u);
}

TEST(HostCells, SetReplaceAndDestroyReleaseElements) {
  int first = 0, second = 0, third = 0;
  const std::uint64_t dims[] = {1, 3};
  auto cell = matrix::detail::do_create_cell(dims);
  qvArrayPtr elem = probeArray(&first);
  const qvArray* raw = elem.get();
  qvSetCell(cell.get(), 0, std::move(elem));
  EXPECT_EQ(qvGetCell(cell.get(), 0), raw);

  qvReplaceCell(cell.get(), 0, probeArray(&second));
  EXPECT_EQ(first, 1);
  qvSetCell(cell.get(), 1, qvArrayPtr());  // an explicit empty element
  EXPECT_EQ(qvGetCell(cell.get(), 1), nullptr);

  // A shared element outlives the cell by the reference held outside it.
  qvArrayPtr kept = probeArray(&third);
  qvSetCell(cell.get(), 2, qvShareArray(kept.get()));
  cell.reset();
  EXPECT_EQ(second, 1);
  EXPECT_EQ(third, 0);
  EXPECT_EQ(kept->refCount.load(), 1);
}

TEST(HostCells, NestedCellsAreReleasedRecursively) {
  int destroyed = 0;
  auto outer = matrix::detail::do_create_cell(matrix::DimSpan());
  auto inner = matrix::detail::do_create_cell(matrix::DimSpan());
  qvSetCell(inner.get(), 0, probeArray(&destroyed));
  qvSetCell(outer.get(), 0, std::move(inner));
  outer.reset();
  EXPECT_EQ(destroyed, 1);
}

TEST(HostCells, BadAccessIsRefusedWithoutLeaking) {
  int destroyed = 0;
  auto cell = matrix::detail::do_create_cell(matrix::DimSpan());
  EXPECT_THROW(qvSetCell(cell.get(), 1, probeArray(&destroyed)), std::out_of_range);
  EXPECT_EQ(destroyed, 1);
  auto numbers = matrix::detail::do_create_numeric(matrix::DimSpan(), qvDOUBLE_CLASS, qvREAL);
  EXPECT_THROW(qvSetCell(numbers.get(), 0, qvArrayPtr()), std::invalid_argument);
  EXPECT_EQ(qvGetCell(numbers.get(), 0), nullptr);
}

}  // namespace
