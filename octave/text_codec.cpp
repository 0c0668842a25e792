#include "text_codec.hpp"

#include <cstdint>

namespace octbridge {
namespace {

bool isContinuation(unsigned char b) noexcept { return (b & 0xC0u) == 0x80u; }

// Length of the sequence a lead byte starts, 0 for a byte that cannot lead.
std::size_t sequenceLength(unsigned char lead) noexcept {
  if (lead < 0x80u) return 1;
  if (lead >= 0xC2u && lead <= 0xDFu) return 2;
  if (lead >= 0xE0u && lead <= 0xEFu) return 3;
  if (lead >= 0xF0u && lead <= 0xF4u) return 4;
  return 0;
}

// Code point of a sequence whose bytes are already known to be well formed.
char32_t decodeSequence(const unsigned char* p, std::size_t n) noexcept {
  static constexpr unsigned char kLeadMask[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  char32_t cp = p[0] & kLeadMask[n];
  for (std::size_t i = 1; i < n; ++i) cp = (cp << 6) | (p[i] & 0x3Fu);
  return cp;
}

void appendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out.push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else if (cp < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  }
}

bool isHighSurrogate(char16_t u) noexcept { return u >= 0xD800u && u <= 0xDBFFu; }
bool isLowSurrogate(char16_t u) noexcept { return u >= 0xDC00u && u <= 0xDFFFu; }

}  // namespace

bool isValidUtf8(std::string_view bytes) noexcept {
  const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
  const std::size_t size = bytes.size();
  std::size_t i = 0;
  while (i < size) {
    const std::size_t n = sequenceLength(p[i]);
    if (n == 0 || size - i < n) return false;
    for (std::size_t k = 1; k < n; ++k) {
      if (!isContinuation(p[i + k])) return false;
    }
    if (n > 1) {
      const char32_t cp = decodeSequence(p + i, n);
      // Leads C2..F4 already exclude two-byte overlongs and most of the range above
      // U+10FFFF; the rest is checked on the code point.
      if ((n == 3 && cp < 0x800) || (n == 4 && (cp < 0x10000 || cp > 0x10FFFF))) return false;
      if (cp >= 0xD800 && cp <= 0xDFFF) return false;
    }
    i += n;
  }
  return true;
}

std::u16string decodeUtf8(std::string_view bytes) {
  const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
  std::u16string out;
  out.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size();) {
    const std::size_t n = sequenceLength(p[i]);
    const char32_t cp = decodeSequence(p + i, n);
    if (cp >= 0x10000) {
      const char32_t v = cp - 0x10000;
      out.push_back(static_cast<char16_t>(0xD800 + (v >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + (v & 0x3FF)));
    } else {
      out.push_back(static_cast<char16_t>(cp));
    }
    i += n;
  }
  return out;
}

std::string encodeUnits(std::u16string_view units) {
  std::string out;
  out.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char16_t u = units[i];
    if (isRawByteUnit(u)) {
      out.push_back(unitToByte(u));
    } else if (isHighSurrogate(u) && i + 1 < units.size() && isLowSurrogate(units[i + 1])) {
      const char32_t cp = 0x10000 + ((char32_t{u} - 0xD800) << 10) + (units[i + 1] - 0xDC00u);
      appendUtf8(out, cp);
      ++i;
    } else {
      appendUtf8(out, u);
    }
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
