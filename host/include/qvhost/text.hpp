// Text converters of the host: UTF-16 to UTF-8, UTF-8 to UTF-16, UTF-16 to the
// platform's narrow file-name encoding.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace matrix {
class ustring_converter {
 public:
  virtual ~ustring_converter() = default;
  virtual std::string do_convert(const char16_t* units, std::size_t n) const = 0;
};
}  // namespace matrix

// The host's file-system exception: text that the narrow encoding cannot represent.
class FsysExceptionBase : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Text that a strict converter refuses (a lone surrogate, say).
class TextConversionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// UTF-16 to the named encoding (the library always asks for "UTF-8"). Strict converters
// throw TextConversionError on invalid UTF-16; lenient ones drop what they cannot convert.
class codecvt_ustring_to_string : public matrix::ustring_converter {
 public:
  codecvt_ustring_to_string(const char* encoding, bool strict);
  std::string do_convert(const char16_t* units, std::size_t n) const override;

 private:
  std::string encoding_;
  bool strict_;
};

// UTF-16 to the locale's narrow encoding for file names (UTF-8 when the locale names
// plain ASCII, as Linux tools do). Throws FsysExceptionBase for text it cannot represent.
class codecvt_ustring_to_narrow_string : public matrix::ustring_converter {
 public:
  explicit codecvt_ustring_to_narrow_string(bool lenient);
  std::string do_convert(const char16_t* units, std::size_t n) const override;

 private:
  std::string encoding_;
  bool lenient_;
};

// UTF-8 to UTF-16. A byte b that is not part of valid UTF-8 becomes the code unit
// 0xFF00 | b, the form raw bytes take in host text, so nothing is lost.
std::u16string utf8_to_ustring(const char* utf8);
std::u16string utf8_to_ustring(const char* utf8, std::size_t n);
