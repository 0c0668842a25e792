// Octave text is bytes (UTF-8 by convention), host text is UTF-16 code units. Bytes that
// are not UTF-8 travel as the code units 0xFF00 | b, the form the library uses for raw
// bytes, so that neither names nor NC_CHAR data lose anything on the way.
#pragma once

#include <string>
#include <string_view>

namespace octbridge {

// Well-formed UTF-8: shortest forms only, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view bytes) noexcept;

// Decodes text that isValidUtf8 accepted.
std::u16string decodeUtf8(std::string_view bytes);

// One unit per byte: ASCII stays, any other byte b becomes 0xFF00 | b.
constexpr char16_t byteToUnit(unsigned char b) noexcept {
  return b < 0x80 ? char16_t{b} : static_cast<char16_t>(0xFF00u | b);
}

// One byte per unit: the low byte, which is the raw byte for units from 0xFF80 up.
constexpr char unitToByte(char16_t u) noexcept { return static_cast<char>(u & 0xFFu); }

// A raw byte as the library hands it out.
constexpr bool isRawByteUnit(char16_t u) noexcept { return u >= 0xFF80u; }

// UTF-8 of the units, surrogate pairs joined; raw-byte units become their byte again and a
// lone surrogate keeps its three-byte form.
std::string encodeUnits(std::u16string_view units);

// Text decoded when it is UTF-8, otherwise byte by byte.
std::u16string bytesToUnits(std::string_view bytes);

}  // namespace octbridge
