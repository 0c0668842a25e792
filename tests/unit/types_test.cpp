// The type table's operation families and the shapes read results take.
#include <gtest/gtest.h>

#include <vector>

#include "convert/read_outputs.hpp"
#include "convert/types.hpp"
#include "test_support.hpp"

namespace {

TEST(TypeTable, OperationFamiliesFollowTheKindOrder) {
  const struct {
    int opId, first;
    bool withUbyte;
    std::optional<DataKind> kind;
  } cases[] = {
      {30, 30, false, DataKind::Double},   {39, 30, false, DataKind::Uchar},
      {40, 30, false, DataKind::Text},     {42, 30, false, DataKind::Vlen},
      {43, 30, false, std::nullopt},       {29, 30, false, std::nullopt},
      {26, 16, true, DataKind::Ubyte},     {27, 16, true, DataKind::Text},
      {29, 16, true, DataKind::Vlen},      {30, 16, true, std::nullopt},
      {116, 113, false, DataKind::Uint64},
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.kind, kindOfOperation(c.opId, c.first, c.withUbyte)) << c.opId;
}

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

TEST(ReadOutputs, CharBytesWidenBySignExtension) {
  const char bytes[] = {'a', '\x7F', '\x80', '\xE9', '\xFF'};
  const qvArrayPtr out = makeCharOutput({5, 1}, bytes, 5);
  const std::u16string units = test::charText(out.get());
  EXPECT_EQ(std::u16string({u'a', u'\x7F', u'\xFF80', u'\xFFE9', u'\xFFFF'}), units);
}

TEST(ReadOutputs, StringsAreDecodedIntoTheirLinearPlace) {
  const char* texts[] = {"caf\xC3\xA9", "", "x"};
  const qvArrayPtr out = makeStringOutput({1, 3}, texts, 3);
  const StringArrayView view = getString(out.get());
  ASSERT_EQ(3u, view.count);
  EXPECT_EQ(u"caf\u00e9", view.at(0));
  EXPECT_FALSE(view.isMissing(1));
  EXPECT_EQ(u"", view.at(1));
  EXPECT_EQ(u"x", view.at(2));
}

}  // namespace
