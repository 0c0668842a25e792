// The type table's traits and the shapes read results take.
#include <gtest/gtest.h>

#include <vector>

#include "convert/read_outputs.hpp"
#include "convert/types.hpp"
#include "test_support.hpp"

namespace {

TEST(TypeTable, TraitsTieTypesClassesAndWidths) {
  for (int k = 0; k <= static_cast<int>(DataKind::Ubyte); ++k) {
    visitNumericKind(static_cast<DataKind>(k), [&](auto traits) {
      using Traits = decltype(traits);
      EXPECT_EQ(Traits::hostClass, hostClassOf(Traits::ncType)) << k;
      EXPECT_EQ(sizeof(typename Traits::Element), atomicElementSize(Traits::ncType)) << k;
      EXPECT_EQ(sizeof(typename Traits::Element), qvElementSize(Traits::hostClass)) << k;
    });
  }
  EXPECT_EQ(std::nullopt, hostClassOf(NC_NAT));
  EXPECT_EQ(std::nullopt, hostClassOf(NC_VLEN + 100));
}

using Dims = DimList;

TEST(ReadShapes, WholeSubsetAndAttribute) {
  const struct {
    std::vector<std::size_t> netcdf;
    Dims whole, subset;
  } cases[] = {
      {{}, {1, 1}, {1, 1}},
      {{5}, {5, 1}, {5, 1}},
      {{0}, {0, 0}, {0, 1}},
      {{2, 3}, {3, 2}, {3, 2}},
      {{2, 3, 4}, {4, 3, 2}, {4, 3, 2}},
      {{0, 5}, {0, 0}, {5, 0}},
      {{2, 0, 3}, {0, 0}, {3, 0, 2}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.whole, wholeReadShape(c.netcdf));
    EXPECT_EQ(c.subset, subsetReadShape(c.netcdf));
  }
  EXPECT_EQ((Dims{0, 0}), attributeShape(0));
  EXPECT_EQ((Dims{1, 5}), attributeShape(5));
}

}  // namespace
