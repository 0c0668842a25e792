#include "convert/text.hpp"

#include <cstdint>

#include "gateway/errors.hpp"
#include "qvhost/msgid.hpp"
#include "qvhost/strings.hpp"
#include "qvhost/text.hpp"

namespace {

// Strict: invalid UTF-16 (a lone surrogate) raises the host's TextConversionError.
codecvt_ustring_to_string utf8Converter() { return {"UTF-8", true}; }

bool isChar(const qvArray* a) { return qvGetClassID(a) == qvCHAR_CLASS; }

// Invalid UTF-16 (a lone surrogate) has no UTF-8 form. The caller's text is at fault, as
// with a file name the platform cannot represent, so it gets the same error rather than
// the converter's own exception.
template <class Convert>
std::string utf8OrInvalidChar(Convert&& convert) {
  try {
    return convert();
  } catch (const TextConversionError&) {
    qvErrMsgId(QUARNA::imagesci::netcdf::invalidCharErr());
  }
}

// netCDF-C takes names as C strings: the text after a NUL would be dropped silently, and
// another file or object than the one named used.
void refuseNul(const std::string& text, const std::string& argName) {
  if (text.find('\0') != std::string::npos) {
    qvErrMsgId(QUARNA::imagesci::netcdf::nameContainsNul(argName));
  }
}

}  // namespace

std::string getCharText(const qvArray* a, const std::string& argName) {
  // Any empty char array counts, whatever its shape: the empty name.
  if (!qvIsCharVector(a) && !(isChar(a) && qvIsEmpty(a))) {
    qvErrMsgId(QUARNA::imagesci::netcdf::argumentWasNotChar(argName));
  }
  return utf8OrInvalidChar([&] { return matrix::get_string(a, utf8Converter()); });
}

std::string getName(const qvArray* a, const std::string& argName) {
  std::string name = getCharText(a, argName);
  refuseNul(name, argName);
  return name;
}

std::string getFileName(const qvArray* a, const std::string& argName) {
  if (!isChar(a)) {
    qvErrMsgId(QUARNA::imagesci::netcdf::argumentWasNotChar(argName));
  }
  const std::u16string text = matrix::get_ustring(a);
  if (text.empty()) {
    return {};
  }
  try {
    const codecvt_ustring_to_narrow_string converter(false);
    std::string path = converter.do_convert(text.data(), text.size());
    refuseNul(path, argName);
    return path;
  } catch (const FsysExceptionBase&) {
    qvErrMsgId(QUARNA::imagesci::netcdf::invalidCharErr());
  }
}

qvArrayPtr makeNameResult(const char* utf8) {
  const std::u16string text = utf8_to_ustring(utf8);
  return matrix::create(text.data(), text.size());
}

qvArrayPtr makeAsciiText(std::string_view text) { return matrix::create(text.data(), text.size()); }

std::string getAttributeText(const qvArray* a) {
  return utf8OrInvalidChar([&] { return matrix::get_string(a, utf8Converter()); });
}

std::vector<char> narrowCharData(const qvArray* a) {
  const std::size_t n = qvGetNumberOfElements(a);
  const auto* units = static_cast<const char16_t*>(qvGetData(a));
  std::vector<char> bytes(n);
  for (std::size_t i = 0; i < n; ++i) {
    bytes[i] = static_cast<char>(static_cast<std::uint8_t>(units[i] & 0xFFu));
  }
  return bytes;
}

void widenCharData(const char* bytes, std::size_t n, char16_t* out) noexcept {
  for (std::size_t i = 0; i < n; ++i) {
    // Via signed char, so bytes above 0x7F fill the high byte with ones.
    out[i] = static_cast<char16_t>(static_cast<signed char>(bytes[i]));
  }
}

Utf8StringList::Utf8StringList(const qvArray* stringArray) {
  const StringArrayView view = getString(stringArray);
  const codecvt_ustring_to_string utf8 = utf8Converter();
  texts_.reserve(view.count);
  for (std::size_t i = 0; i < view.count; ++i) {
    if (view.isMissing(i)) {
      throw foundation::core::except::Exception<QUARNA::string::MissingNotSupported>(
          QUARNA::string::MissingNotSupported());
    }
    const std::u16string& text = view.at(i);
    texts_.push_back(utf8OrInvalidChar([&] { return utf8.do_convert(text.data(), text.size()); }));
  }
  // Only now: the strings no longer move.
  pointers_.reserve(texts_.size());
  for (const std::string& text : texts_) {
    pointers_.push_back(text.c_str());
  }
}
