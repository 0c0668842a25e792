// The substitute host: reference counts of arrays, lent storage, cells, structs and string
// elements (missing ones included), the catalogue's fallback text, and the text converters
// at their edges.

#include <clocale>

#include "test_support.hpp"

namespace {

using namespace test;

// A lent data block that counts its destruction, so a test sees when its array dies.
class ProbeBlock final : public qvDataBlock {
 public:
  explicit ProbeBlock(int* destroyed) : destroyed_(destroyed) {}
  ~ProbeBlock() override { ++*destroyed_; }
  void* data() noexcept override { return &value_; }

 private:
  double value_ = 0;
  int* destroyed_;
};
qvArrayPtr probeArray(int* destroyed) {
  return qvWrapExternal(qvDOUBLE_CLASS, Dims{1, 1}, std::make_unique<ProbeBlock>(destroyed));
}

TEST(HostReferences, ArraysCellsAndStructsLiveAsLongAsTheLastReference) {
  int destroyed = 0;
  qvArrayPtr first = probeArray(&destroyed);
  qvArrayPtr second = qvShareArray(first.get());
  first.reset();
  EXPECT_EQ(destroyed, 0);
  second.reset();
  EXPECT_EQ(destroyed, 1);
  qvArrayPtr a = probeArray(&destroyed);
  a->refCount.fetch_add(1);
  matrix::destroyArray(a.release());  // destroys whatever other references remain
  EXPECT_EQ(destroyed, 2);
  EXPECT_THROW(qvWrapExternal(qvCELL_CLASS, Dims{1, 1}, std::make_unique<ProbeBlock>(&destroyed)),
               std::invalid_argument);
  EXPECT_EQ(destroyed, 3);

  qvArrayPtr outer = cell(cell(probeArray(&destroyed)), probeArray(&destroyed));
  qvReplaceCell(outer.get(), 1, probeArray(&destroyed));
  EXPECT_EQ(destroyed, 4);
  qvArrayPtr s = qvCreateStruct(Dims{2, 1}, {"a", "b"});
  qvSetFieldByNumber(s.get(), 1, 0, std::move(outer));
  qvSetFieldByNumber(s.get(), 1, 1, probeArray(&destroyed));
  qvSetFieldByNumber(s.get(), 1, 1, probeArray(&destroyed));  // releases the one it replaces
  EXPECT_EQ(destroyed, 5);
  EXPECT_STREQ(qvGetFieldNameByNumber(s.get(), 1), "b");
  EXPECT_EQ(qvGetFieldNameByNumber(s.get(), 2), nullptr);
  EXPECT_EQ(qvGetFieldByNumber(s.get(), 0, 0), nullptr);
  EXPECT_THROW(qvSetFieldByNumber(s.get(), 2, 0, nullptr), std::out_of_range);
  EXPECT_THROW(qvCreateStruct(Dims{1, 1}, {"a", "a"}), std::invalid_argument);
  s.reset();
  EXPECT_EQ(destroyed, 8);
  // Blocks from 4 MB on are advised into huge pages; the memory is still zero-filled.
  EXPECT_EQ(valuesOf(zeros(qvDOUBLE_CLASS, {1 << 20, 1})).back(), 0.0);
}

TEST(HostReferences, StringElementsAreCountedAndReplacingReleases) {
  auto a = createStringArray(u"shared");
  auto b = createStringArray(std::uint64_t{1}, std::uint64_t{2});
  qvSharedText* text = getString(a.get()).elements[0];
  shareStringElement(b.get(), 0, a.get(), 0);
  shareStringElement(b.get(), 1, a.get(), 0);
  shareStringElement(b.get(), 1, b.get(), 1);  // sharing with itself keeps the count
  EXPECT_EQ(text->useCount(), 3);
  setStringElement(b.get(), 0, u"other");
  setStringMissing(b.get(), 1);
  EXPECT_EQ(text->useCount(), 1);
  shareStringElement(b.get(), 0, b.get(), 1);  // a missing element shares as missing
  EXPECT_EQ(getString(b.get()).elements[0], nullptr);
  shareStringElement(b.get(), 1, a.get(), 0);
  a.reset();  // the text lives on in b
  EXPECT_EQ(text->useCount(), 1);
  EXPECT_EQ(getString(b.get()).at(1), u"shared");
}

// An unknown identifier still gets a text, naming it and its arguments.
TEST(HostCatalogue, UnknownIdentifiersGetAGenericText) {
  EXPECT_FALSE(resource_core::catalogueHas("QUARNA:imagesci:netcdf:noSuchThing"));
  const std::u16string text = resource_core::messageText(
      resource_core::BaseMsgID("QUARNA:imagesci:netcdf", "noSuchThing", {std::string("abc"), 42L}));
  EXPECT_EQ(text,
            u"Unknown message identifier 'QUARNA:imagesci:netcdf:noSuchThing' with "
            u"arguments: abc, 42.");
}

// A lenient converter drops what its encoding cannot hold (lone surrogates, characters
// outside Latin-1); a strict one refuses it. UTF-8 decoding keeps invalid bytes, marked.
TEST(HostConverters, EncodingAndDecodingEdges) {
  const std::u16string text = u"a\xD800\u00E9\u20AC\xDC00z\xD83D\xDE00";
  const auto convert = [&](const char* encoding, bool strict) {
    return codecvt_ustring_to_string(encoding, strict).do_convert(text.data(), text.size());
  };
  EXPECT_EQ(convert("utf_8", false), "a\xC3\xA9\xE2\x82\xACz\xF0\x9F\x98\x80");
  EXPECT_EQ(convert("ISO-8859-1", false), "a\xE9z");
  EXPECT_THROW(convert("UTF-8", true), TextConversionError);
  EXPECT_THROW(convert("ISO-8859-1", true), TextConversionError);
  for (const auto& [bytes, units] : std::vector<std::pair<std::string, std::u16string>>{
           {"\xC3\xA9t\xF0\x9F\x98\x80", u"\u00E9t\U0001F600"},
           {"\xE9", u"\xFFE9"},
           {"a\xC3", u"a\xFFC3"},                                    // truncated sequence
           {"\xC0\xAF", u"\xFFC0\xFFAF"},                            // overlong
           {"\xED\xA0\x80", u"\xFFED\xFFA0\xFF80"},                  // encoded surrogate
           {"\xE2\x82\x41\xE2\x82\xAC", u"\xFFE2\xFF82\x41\u20AC"},  // cut short before "A"
           {std::string("x\0y", 3), std::u16string(u"x\0y", 3)}})
    EXPECT_EQ(utf8_to_ustring(bytes.data(), bytes.size()), units) << bytes;
}

std::string narrow(const std::u16string& s) {
  return codecvt_ustring_to_narrow_string(false).do_convert(s.data(), s.size());
}

// File names: UTF-8 under an ASCII locale, else the locale's own encoding. A Latin-1
// locale is built on the fly, since minimal systems ship only C and C.UTF-8.
TEST(HostConverters, NarrowEncodingFollowsTheLocale) {
  const std::string saved = std::setlocale(LC_CTYPE, nullptr);
  const std::shared_ptr<void> restore(nullptr,
                                      [&](void*) { std::setlocale(LC_CTYPE, saved.c_str()); });
  const auto use = [](const char* name) { return std::setlocale(LC_CTYPE, name) != nullptr; };
  ASSERT_TRUE(use("C"));
  EXPECT_EQ(narrow(u"data/é.nc"), "data/\xC3\xA9.nc");
  EXPECT_THROW(narrow(u"\xDC00.nc"), FsysExceptionBase);
  const ScratchDir dir;
  const std::string make = "localedef -i en_US -f ISO-8859-1 " + dir.file("l1") + " 2>/dev/null";
  bool latin1 = use("en_US.ISO-8859-1");
  if (!latin1 && std::system(make.c_str()) == 0 && setenv("LOCPATH", dir.file("").c_str(), 1) == 0)
    latin1 = use("l1");
  unsetenv("LOCPATH");
  if (!latin1) GTEST_SKIP() << "no Latin-1 locale can be made here";
  EXPECT_EQ(narrow(u"é.nc"), "\xE9.nc");
  EXPECT_THROW(narrow(u"\u20AC.nc"), FsysExceptionBase);
}

}  // namespace
