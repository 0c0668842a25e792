#include "convert/outputs.hpp"

#include <gtest/gtest.h>

#include "test_support.hpp"

namespace {

using test::dimsOf;

TEST(Outputs, Scalars) {
  const qvArrayPtr d = makeDoubleScalar(-2.5);
  EXPECT_EQ(qvGetClassID(d.get()), qvDOUBLE_CLASS);
  EXPECT_EQ(dimsOf(d.get()), (std::vector<std::uint64_t>{1, 1}));
  EXPECT_EQ(*static_cast<const double*>(qvGetData(d.get())), -2.5);

  for (const bool v : {true, false}) {
    const qvArrayPtr l = makeLogicalScalar(v);
    EXPECT_TRUE(qvIsLogicalScalar(l.get()));
    EXPECT_EQ(qvGetLogicals(l.get())[0], v);
  }
}

TEST(Outputs, IdList) {
  const qvArrayPtr ids = makeIdList({65536, 3, 131072});
  EXPECT_EQ(qvGetClassID(ids.get()), qvDOUBLE_CLASS);
  EXPECT_EQ(dimsOf(ids.get()), (std::vector<std::uint64_t>{1, 3}));
  const auto* v = static_cast<const double*>(qvGetData(ids.get()));
  EXPECT_EQ(std::vector<double>(v, v + 3), (std::vector<double>{65536, 3, 131072}));

  const qvArrayPtr none = makeIdList({});
  EXPECT_EQ(qvGetClassID(none.get()), qvDOUBLE_CLASS);
  EXPECT_EQ(dimsOf(none.get()), (std::vector<std::uint64_t>{0, 0}));
}

}  // namespace
