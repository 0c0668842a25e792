// Text converters between the host's UTF-16 and UTF-8 or the locale's narrow encoding.
#include "qvhost/text.hpp"

#include <langinfo.h>

#include <boost/locale/encoding.hpp>
#include <boost/locale/encoding_errors.hpp>
#include <boost/locale/encoding_utf.hpp>
#include <boost/locale/utf.hpp>
#include <cctype>

namespace conv = boost::locale::conv;
namespace utf = boost::locale::utf;

namespace {

bool namesUtf8(const std::string& encoding) {
  std::string key;
  for (char c : encoding) {
    if (c != '-' && c != '_') key += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  }
  return key == "UTF8";
}

bool isLead(char16_t u) noexcept { return u >= 0xD800 && u <= 0xDBFF; }
bool isTrail(char16_t u) noexcept { return u >= 0xDC00 && u <= 0xDFFF; }

// Lenient conversion drops unpaired surrogates only. Decoding with Boost's skip method
// would also swallow the character that follows a lone lead surrogate.
std::u16string withoutLoneSurrogates(const char16_t* units, std::size_t n) {
  std::u16string out;
  out.reserve(n);
  for (std::size_t i = 0; i < n; ++i) {
    if (isLead(units[i]) && i + 1 < n && isTrail(units[i + 1])) {
      out += units[i];
      out += units[++i];
    } else if (!isLead(units[i]) && !isTrail(units[i])) {
      out += units[i];
    }
  }
  return out;
}

// UTF-16 to the named encoding; throws conversion_error or invalid_charset_error.
std::string encode(const std::string& encoding, const char16_t* units, std::size_t n, bool strict) {
  std::u16string cleaned;
  if (!strict) {
    cleaned = withoutLoneSurrogates(units, n);
    units = cleaned.data();
    n = cleaned.size();
  }
  if (namesUtf8(encoding)) return conv::utf_to_utf<char>(units, units + n, conv::stop);
  const std::wstring wide = conv::utf_to_utf<wchar_t>(units, units + n, conv::stop);
  return conv::from_utf(wide.data(), wide.data() + wide.size(), encoding,
                        strict ? conv::stop : conv::skip);
}

std::string localeNarrowEncoding() {
  const char* codeset = nl_langinfo(CODESET);
  std::string name = codeset != nullptr ? codeset : "";
  // The plain C locale reports ASCII; file names on Linux are UTF-8 in practice.
  if (name.empty() || name == "ANSI_X3.4-1968" || name == "ASCII" || name == "US-ASCII") {
    return "UTF-8";
  }
  return name;
}

}  // namespace

codecvt_ustring_to_string::codecvt_ustring_to_string(const char* encoding, bool strict)
    : encoding_(encoding != nullptr ? encoding : "UTF-8"), strict_(strict) {}

std::string codecvt_ustring_to_string::do_convert(const char16_t* units, std::size_t n) const {
  try {
    return encode(encoding_, units, n, strict_);
  } catch (const conv::conversion_error&) {
    throw TextConversionError("text cannot be converted to " + encoding_);
  } catch (const conv::invalid_charset_error&) {
    throw TextConversionError("unknown text encoding " + encoding_);
  }
}

codecvt_ustring_to_narrow_string::codecvt_ustring_to_narrow_string(bool lenient)
    : encoding_(localeNarrowEncoding()), lenient_(lenient) {}

std::string codecvt_ustring_to_narrow_string::do_convert(const char16_t* units,
                                                         std::size_t n) const {
  try {
    return encode(encoding_, units, n, !lenient_);
  } catch (const conv::conversion_error&) {
    throw FsysExceptionBase("file name cannot be represented in the " + encoding_ + " encoding");
  } catch (const conv::invalid_charset_error&) {
    throw FsysExceptionBase("the file-name encoding " + encoding_ + " is not supported");
  }
}

std::u16string utf8_to_ustring(const char* utf8) {
  return utf8 == nullptr ? std::u16string()
                         : utf8_to_ustring(utf8, std::char_traits<char>::length(utf8));
}

std::u16string utf8_to_ustring(const char* utf8, std::size_t n) {
  std::u16string out;
  out.reserve(n);
  const char* const end = utf8 + n;
  const char* runStart = utf8;
  const char* p = utf8;
  auto flushRun = [&](const char* runEnd) {
    if (runEnd != runStart) out += conv::utf_to_utf<char16_t>(runStart, runEnd, conv::stop);
  };
  // Valid runs are decoded whole; each byte where a sequence breaks stays as a raw byte.
  while (p != end) {
    const char* seqStart = p;
    const utf::code_point c = utf::utf_traits<char>::decode(p, end);
    if (c == utf::illegal || c == utf::incomplete) {
      flushRun(seqStart);
      out += static_cast<char16_t>(0xFF00 | static_cast<unsigned char>(*seqStart));
      p = seqStart + 1;
      runStart = p;
    }
  }
  flushRun(end);
  return out;
}
