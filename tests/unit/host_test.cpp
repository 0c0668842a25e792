// The substitute host: reference counts of arrays, lent storage, cells, structs and string
// elements (missing ones included), the catalogue's fallback text, and the text converters
// at their edges.

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
  EXPECT_THROW(qvWrapExternal(qvCELL_CLASS, Dims{1, 1}, std::make_unique<ProbeBlock>(&destroyed)),
               std::invalid_argument);
  EXPECT_EQ(destroyed, 2);
  qvArrayPtr s = qvCreateStruct(Dims{2, 1}, {"a", "b"});
  qvSetFieldByNumber(s.get(), 1, 0, cell(cell(probeArray(&destroyed))));
  qvSetFieldByNumber(s.get(), 1, 1, probeArray(&destroyed));
  qvSetFieldByNumber(s.get(), 1, 1, probeArray(&destroyed));  // releases the one it replaces
  EXPECT_EQ(destroyed, 3);
  EXPECT_THROW(qvSetFieldByNumber(s.get(), 2, 0, nullptr), std::out_of_range);
  EXPECT_THROW(qvCreateStruct(Dims{1, 1}, {"a", "a"}), std::invalid_argument);
  s.reset();
  EXPECT_EQ(destroyed, 5);
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
           {"a\xC3", u"a\xFFC3"},                                    // truncated sequence
           {"\xE2\x82\x41\xE2\x82\xAC", u"\xFFE2\xFF82\x41\u20AC"},  // cut short before "A"
           {std::string("x\0y", 3), std::u16string(u"x\0y", 3)}})
    EXPECT_EQ(utf8_to_ustring(bytes.data(), bytes.size()), units) << bytes;
}

}  // namespace
