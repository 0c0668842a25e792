// The substitute host: reference counts of arrays, lent storage, structs and string
// elements (missing ones included), the catalogue's fallback text, and the text converters
// at their edges.
#include "test_support.hpp"

namespace {

using namespace test;

// A lent data block that counts its destruction, so a test sees when its array dies.
struct ProbeBlock final : qvDataBlock {
  explicit ProbeBlock(int* counter) : destroyed(counter) {}
  ~ProbeBlock() override { ++*destroyed; }
  void* data() noexcept override { return &value; }
  double value = 0;
  int* destroyed;
};
qvArrayPtr probeArray(int* destroyed, qvClassID cls = qvDOUBLE_CLASS) {
  return qvWrapExternal(cls, Dims{1, 1}, std::make_unique<ProbeBlock>(destroyed));
}

TEST(HostReferences, ArraysAndStructsLiveAsLongAsTheLastReference) {
  int destroyed = 0;
  qvArrayPtr first = probeArray(&destroyed), second = qvShareArray(first.get());
  first.reset();
  EXPECT_EQ(destroyed, 0);
  EXPECT_THROW(probeArray(&destroyed, qvCELL_CLASS), std::invalid_argument);
  EXPECT_EQ(destroyed, 1);
  qvArrayPtr s = qvCreateStruct(Dims{2, 1}, {"a", "b"});
  qvSetFieldByNumber(s.get(), 1, 0, cell(std::move(second)));
  qvSetFieldByNumber(s.get(), 1, 1, probeArray(&destroyed));
  qvSetFieldByNumber(s.get(), 1, 1, probeArray(&destroyed));  // releases the one it replaces
  EXPECT_EQ(destroyed, 2);
  EXPECT_THROW(qvSetFieldByNumber(s.get(), 2, 0, nullptr), std::out_of_range);
  EXPECT_THROW(qvCreateStruct(Dims{1, 1}, {"a", "a"}), std::invalid_argument);
  s.reset();
  EXPECT_EQ(destroyed, 4);
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
  shareStringElement(b.get(), 0, b.get(), 1);  // a missing element shares as missing
  EXPECT_EQ(getString(b.get()).elements[0], nullptr);
  shareStringElement(b.get(), 1, a.get(), 0);
  a.reset();  // the text lives on in b
  EXPECT_EQ(text->useCount(), 1);
  EXPECT_EQ(getString(b.get()).at(1), u"shared");
}

// An unknown identifier still gets a text, naming it and its arguments. A lenient converter
// drops what its encoding cannot hold (lone surrogates, characters outside Latin-1); a
// strict one refuses it. UTF-8 decoding keeps invalid bytes, marked.
TEST(HostText, FallbackMessagesAndConverterEdges) {
  EXPECT_EQ(resource_core::messageText(resource_core::BaseMsgID(
                "QUARNA:imagesci:netcdf", "noSuchThing", {std::string("abc"), 42L})),
            u"Unknown message identifier 'QUARNA:imagesci:netcdf:noSuchThing' with "
            u"arguments: abc, 42.");
  const std::u16string text = u"a\xD800\u00E9\u20AC\xDC00z\xD83D\xDE00";
  const auto convert = [&](const char* encoding, bool strict) {
    return codecvt_ustring_to_string(encoding, strict).do_convert(text.data(), text.size());
  };
  EXPECT_EQ(convert("utf_8", false), "a\xC3\xA9\xE2\x82\xACz\xF0\x9F\x98\x80");
  EXPECT_EQ(convert("ISO-8859-1", false), "a\xE9z");
  EXPECT_THROW(convert("UTF-8", true), TextConversionError);
  EXPECT_THROW(convert("ISO-8859-1", true), TextConversionError);
  const std::string bytes = "\xC3\xA9t\xE2\x82\x41\xC3";  // one cut short, one truncated
  EXPECT_EQ(utf8_to_ustring(bytes.data(), bytes.size()), u"\u00E9t\xFFE2\xFF82\x41\xFFC3");
}

}  // namespace
