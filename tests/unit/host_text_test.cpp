// Text in char arrays and the host's converters.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <new>
#include <string>

#include "qvhost/qvhost.hpp"

namespace {

std::string utf8(const std::u16string& s) {
  return codecvt_ustring_to_string("UTF-8", true).do_convert(s.data(), s.size());
}

TEST(HostCharArrays, NarrowTextWidensBytesAsUnsigned) {
  auto a = matrix::create("a\xE9", 2);
  EXPECT_EQ(matrix::get_ustring(a.get()), std::u16string(u"a\u00E9"));
  auto w = matrix::create(u"x\u263A", 2);
  EXPECT_EQ(matrix::get_ustring(w.get()), std::u16string(u"x\u263A"));
  EXPECT_EQ(matrix::get_string(w.get(), codecvt_ustring_to_string("UTF-8", true)), "x\xE2\x98\xBA");
  auto numbers = matrix::detail::do_create_numeric(matrix::DimSpan(), qvUINT16_CLASS, qvREAL);
  EXPECT_THROW(matrix::get_ustring(numbers.get()), std::invalid_argument);
}

TEST(HostCharArrays, ArrayToStringKeepsLowBytes) {
  char* s = qvArrayToString(matrix::create(u"op\u263A", 3).get());
  ASSERT_NE(s, nullptr);
  EXPECT_STREQ(s, "op:");  // U+263A keeps its low byte 0x3A
  qvFree(s);
  char* empty = qvArrayToString(matrix::create("", 0).get());
  ASSERT_NE(empty, nullptr);
  EXPECT_STREQ(empty, "");
  qvFree(empty);
  EXPECT_EQ(qvArrayToString(createStringArray(u"op").get()), nullptr);
}

TEST(HostMemory, CallocZeroesAndReportsExhaustion) {
  void* none = qvCalloc(0, 8);
  EXPECT_NE(none, nullptr);
  qvFree(none);
  auto* p = static_cast<unsigned char*>(qvCalloc(16, 4));
  for (int i = 0; i < 64; ++i) EXPECT_EQ(p[i], 0);
  qvFree(p);
  EXPECT_THROW(qvCalloc(std::numeric_limits<std::size_t>::max() / 2, 4), std::bad_alloc);
}

TEST(HostConverters, StrictUtf8RefusesLoneSurrogates) {
  EXPECT_EQ(utf8(u"Température"), "Temp\xC3\xA9rature");
  EXPECT_EQ(utf8(u"\U0001F600"), "\xF0\x9F\x98\x80");
  const std::u16string bad[] = {u"a\xD800", std::u16string(u"a\xD800") + u"b", u"\xDC00z"};
  for (const auto& s : bad) EXPECT_THROW(utf8(s), TextConversionError);
  // A lenient converter drops the surrogate and nothing else.
  const std::u16string loneLead = std::u16string(u"a\xD800") + u"b";
  EXPECT_EQ(codecvt_ustring_to_string("UTF-8", false).do_convert(loneLead.data(), loneLead.size()),
            "ab");
}

struct DecodeCase {
  std::string bytes;
  std::u16string units;
};

TEST(HostConverters, Utf8DecodingKeepsInvalidBytesRaw) {
  const DecodeCase cases[] = {
      {"abc", u"abc"},
      {"\xC3\xA9t\xC3\xA9", u"\u00E9t\u00E9"},
      {"\xF0\x9F\x98\x80", u"\U0001F600"},
      {"\xE9", u"\xFFE9"},
      {"a\xC3", u"a\xFFC3"},                    // truncated sequence
      {"\xC0\xAF", u"\xFFC0\xFFAF"},            // overlong
      {"\xED\xA0\x80", u"\xFFED\xFFA0\xFF80"},  // encoded surrogate
      {"\xE2\x82"
       "A\xE2\x82\xAC",
       u"\xFFE2\xFF82"
       u"A\u20AC"},
      {std::string("x\0y", 3), std::u16string(u"x\0y", 3)},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(utf8_to_ustring(c.bytes.data(), c.bytes.size()), c.units) << c.bytes;
  }
  EXPECT_EQ(utf8_to_ustring("\xC3\xA9"), u"\u00E9");
  EXPECT_EQ(utf8_to_ustring(""), u"");
}

// Switches LC_CTYPE for one test and restores it afterwards.
class LocaleGuard {
 public:
  LocaleGuard() : saved_(std::setlocale(LC_CTYPE, nullptr)) {}
  ~LocaleGuard() { std::setlocale(LC_CTYPE, saved_.c_str()); }
  bool use(const char* name) { return std::setlocale(LC_CTYPE, name) != nullptr; }

 private:
  std::string saved_;
};

std::string narrow(const std::u16string& s) {
  return codecvt_ustring_to_narrow_string(false).do_convert(s.data(), s.size());
}

TEST(HostConverters, NarrowEncodingOfAnAsciiLocaleIsUtf8) {
  LocaleGuard guard;
  ASSERT_TRUE(guard.use("C"));
  EXPECT_EQ(narrow(u"data/é.nc"), "data/\xC3\xA9.nc");
  EXPECT_THROW(narrow(u"\xDC00.nc"), FsysExceptionBase);
}

// A Latin-1 locale is built on the fly, since minimal systems ship only C and C.UTF-8.
bool useLatin1Locale(LocaleGuard& guard) {
  if (guard.use("en_US.ISO-8859-1")) return true;
  const char* tmp = std::getenv("NETCDFLIB_TEST_TMP");
  const auto dir = std::filesystem::path(tmp != nullptr ? tmp : "/tmp") / "host-locales";
  std::filesystem::create_directories(dir);
  const std::string cmd = "localedef -i en_US -f ISO-8859-1 " +
                          (dir / "en_US.ISO-8859-1").string() + " >/dev/null 2>&1";
  if (!std::filesystem::exists(dir / "en_US.ISO-8859-1") && std::system(cmd.c_str()) != 0) {
    return false;
  }
  setenv("LOCPATH", dir.c_str(), 1);
  const bool ok = guard.use("en_US.ISO-8859-1");
  unsetenv("LOCPATH");
  return ok;
}

TEST(HostConverters, NarrowEncodingFollowsALatin1Locale) {
  LocaleGuard guard;
  if (!useLatin1Locale(guard)) GTEST_SKIP() << "no Latin-1 locale can be made here";
  EXPECT_EQ(narrow(u"é.nc"), "\xE9.nc");
  EXPECT_THROW(narrow(u"\u20AC.nc"), FsysExceptionBase);
  EXPECT_THROW(narrow(u"\xD800.nc"), FsysExceptionBase);
}

}  // namespace
