#include "text_codec.hpp"

#include <boost/locale/utf.hpp>
#include <iterator>

namespace octbridge {
namespace {
namespace utf = boost::locale::utf;

bool isCodePoint(utf::code_point c) noexcept { return c != utf::illegal && c != utf::incomplete; }
}  // namespace

// Boost's decoder refuses overlong forms, surrogates and code points above U+10FFFF.
bool isValidUtf8(std::string_view bytes) noexcept {
  const char* p = bytes.data();
  const char* const end = p + bytes.size();
  while (p != end) {
    if (!isCodePoint(utf::utf_traits<char>::decode(p, end))) return false;
  }
  return true;
}

std::u16string decodeUtf8(std::string_view bytes) {
  std::u16string out;
  out.reserve(bytes.size());
  const char* p = bytes.data();
  const char* const end = p + bytes.size();
  while (p != end) {
    utf::utf_traits<char16_t>::encode(utf::utf_traits<char>::decode(p, end),
                                      std::back_inserter(out));
  }
  return out;
}

std::string encodeUnits(std::u16string_view units) {
  std::string out;
  out.reserve(units.size());
  const char16_t* p = units.data();
  const char16_t* const end = p + units.size();
  while (p != end) {
    if (isRawByteUnit(*p)) {
      out.push_back(unitToByte(*p++));
      continue;
    }
    const char16_t* const start = p;
    utf::code_point c = utf::utf_traits<char16_t>::decode(p, end);
    if (!isCodePoint(c)) {
      // A lone surrogate, encoded as if it were a code point.
      c = *start;
      p = start + 1;
    }
    utf::utf_traits<char>::encode(c, std::back_inserter(out));
  }
  return out;
}

std::u16string bytesToUnits(std::string_view bytes) {
  if (isValidUtf8(bytes)) return decodeUtf8(bytes);
  std::u16string out(bytes.size(), u'\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    out[i] = byteToUnit(static_cast<unsigned char>(bytes[i]));
  }
  return out;
}

}  // namespace octbridge
