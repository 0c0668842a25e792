// The substitute host's reference counts (arrays and string elements live as long as the
// last reference, and no longer) and its text converters at their edges.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "host_probe.hpp"
#include "qvhost/qvhost.hpp"

namespace {

TEST(HostReferences, SharedArraySurvivesOneRelease) {
  int destroyed = 0;
  qvArrayPtr first = probeArray(&destroyed);
  qvArrayPtr second = qvShareArray(first.get());
  EXPECT_EQ(first.get(), second.get());
  EXPECT_EQ(first->refCount.load(), 2);
  first.reset();
  EXPECT_EQ(destroyed, 0);
  second.reset();
  EXPECT_EQ(destroyed, 1);
  qvArrayDeleter()(nullptr);  // releasing nothing is allowed
  EXPECT_FALSE(qvShareArray(nullptr));
  qvArrayPtr a = probeArray(&destroyed);
  a->refCount.fetch_add(1);
  matrix::destroyArray(a.release());  // destroys whatever other references remain
  EXPECT_EQ(destroyed, 2);
}

TEST(HostReferences, StringElementsAreCountedAndReplacingReleases) {
  auto a = createStringArray(u"shared");
  auto b = createStringArray(std::uint64_t{1}, std::uint64_t{2});
  qvSharedText* text = getString(a.get()).elements[0];
  ASSERT_EQ(text->useCount(), 1);
  shareStringElement(b.get(), 0, a.get(), 0);
  shareStringElement(b.get(), 1, a.get(), 0);
  EXPECT_EQ(text->useCount(), 3);
  shareStringElement(b.get(), 1, b.get(), 1);  // sharing with itself keeps the count
  EXPECT_EQ(text->useCount(), 3);
  setStringElement(b.get(), 0, u"other");
  EXPECT_EQ(text->useCount(), 2);
  setStringMissing(b.get(), 1);
  EXPECT_EQ(text->useCount(), 1);
  shareStringElement(b.get(), 1, a.get(), 0);
  a.reset();  // the text lives on in b
  EXPECT_EQ(text->useCount(), 1);
  EXPECT_EQ(getString(b.get()).at(1), u"shared");
}

TEST(HostReferences, CellsReleaseTheirElements) {
  int destroyed = 0;
  const std::uint64_t dims[] = {2, 1};
  qvArrayPtr outer = matrix::detail::do_create_cell(dims);
  qvArrayPtr inner = matrix::detail::do_create_cell(dims);
  qvSetCell(inner.get(), 0, probeArray(&destroyed));
  qvSetCell(outer.get(), 0, std::move(inner));
  qvSetCell(outer.get(), 1, probeArray(&destroyed));
  qvReplaceCell(outer.get(), 1, probeArray(&destroyed));
  EXPECT_EQ(destroyed, 1);
  outer.reset();
  EXPECT_EQ(destroyed, 3);
}

// The catalogue never leaves an error without text: an unknown identifier gets one naming
// it and its arguments.
TEST(HostCatalogue, UnknownIdentifiersGetAGenericText) {
  EXPECT_FALSE(resource_core::catalogueHas("QUARNA:imagesci:netcdf:noSuchThing"));
  const resource_core::BaseMsgID id("QUARNA:imagesci:netcdf", "noSuchThing",
                                    {std::string("abc"), 42L});
  const std::u16string text = resource_core::messageText(id);
  for (const std::u16string part : {u"QUARNA:imagesci:netcdf:noSuchThing", u"abc", u"42"}) {
    EXPECT_NE(text.find(part), std::u16string::npos);
  }
}

// A lenient converter drops what its encoding cannot hold (lone surrogates, characters
// outside Latin-1); a strict one refuses it.
TEST(HostConverters, LenientDropsStrictRefuses) {
  const std::u16string text = u"a\xD800\u00E9\u20AC\xDC00z";
  const auto convert = [&](const char* encoding, bool strict) {
    return codecvt_ustring_to_string(encoding, strict).do_convert(text.data(), text.size());
  };
  EXPECT_EQ(convert("UTF-8", false), "a\xC3\xA9\xE2\x82\xACz");
  EXPECT_EQ(convert("ISO-8859-1", false), "a\xE9z");
  EXPECT_THROW(convert("UTF-8", true), TextConversionError);
  EXPECT_THROW(convert("ISO-8859-1", true), TextConversionError);
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
