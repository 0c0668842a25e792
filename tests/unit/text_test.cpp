#include "convert/text.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.hpp"

namespace {

using test::args;

constexpr const char* kNotChar = "QUARNA:imagesci:netcdf:argumentWasNotChar";

TEST(GetName, CharRowsAndEveryEmptyCharArray) {
  EXPECT_EQ(getName(test::charRow(std::string("lat")).get(), "variable"), "lat");
  for (const auto& [rows, cols] : std::vector<std::pair<int, int>>{{1, 0}, {0, 0}, {0, 5}}) {
    SCOPED_TRACE(testing::Message() << rows << "x" << cols);
    const qvArrayPtr empty = test::charArray(u"", rows, cols);
    EXPECT_EQ(getName(empty.get(), "variable"), "");
  }
}

TEST(GetName, RefusesOtherShapesAndClasses) {
  std::vector<std::pair<const char*, qvArrayPtr>> refused;
  refused.emplace_back("2x3 char", test::charArray(u"abcdef", 2, 3));
  refused.emplace_back("3x1 char", test::charArray(u"abc", 3, 1));
  refused.emplace_back("string scalar", test::stringScalar(u"lat"));
  refused.emplace_back("double", test::scalar<double>(1));
  refused.emplace_back("empty double", test::zeros(qvDOUBLE_CLASS, {0, 0}));
  refused.emplace_back("cell", test::emptyCell());
  for (const auto& c : refused) {
    SCOPED_TRACE(c.first);
    EXPECT_MSGID(getName(c.second.get(), "dimension"), kNotChar, args("dimension"));
  }
}

TEST(GetFileName, AnyCharArray) {
  EXPECT_EQ(getFileName(test::charRow(std::string("/tmp/a.nc")).get(), "file"), "/tmp/a.nc");
  EXPECT_EQ(getFileName(test::charArray(u"", 0, 0).get(), "file"), "");
  EXPECT_EQ(getFileName(test::charRow(u"d/\u00e9.nc").get(), "file"), "d/\xc3\xa9.nc");
  // Not a row, still a file name: column-major characters.
  EXPECT_EQ(getFileName(test::charArray(u"abcd", 2, 2).get(), "file"), "abcd");
}

TEST(GetFileName, Refusals) {
  EXPECT_MSGID(getFileName(test::stringScalar(u"a.nc").get(), "file"), kNotChar, args("file"));
  EXPECT_MSGID(getFileName(test::scalar<double>(1).get(), "file"), kNotChar, args("file"));
  EXPECT_MSGID(getFileName(test::charRow(std::u16string(u"a\xdc00.nc")).get(), "file"),
               "QUARNA:imagesci:netcdf:invalidCharErr", args());
}

TEST(CharData, NarrowKeepsLowBytesWidenSignExtends) {
  const qvArrayPtr text = test::charRow(u"A\u00e9\u4e2d\u00ff");
  EXPECT_EQ(narrowCharData(text.get()), (std::vector<char>{'A', '\xe9', '\x2d', '\xff'}));
  EXPECT_TRUE(narrowCharData(test::charArray(u"", 0, 3).get()).empty());

  const std::vector<char> bytes{'A', '\xe9', '\x80', '\x7f', '\xff', '\0'};
  std::vector<char16_t> wide(bytes.size());
  widenCharData(bytes.data(), bytes.size(), wide.data());
  EXPECT_EQ(wide, (std::vector<char16_t>{0x0041, 0xFFE9, 0xFF80, 0x007F, 0xFFFF, 0x0000}));
}

}  // namespace
