// Text held in char arrays: extraction as UTF-16, through a converter, or as narrow bytes.
#include <stdexcept>

#include "qvhost/array.hpp"
#include "qvhost/text.hpp"

namespace {

const char16_t* charUnits(const qvArray* a) {
  if (a == nullptr || qvGetClassID(a) != qvCHAR_CLASS) {
    throw std::invalid_argument("text requested from an array that is not of class char");
  }
  return static_cast<const char16_t*>(a->data);
}

}  // namespace

char* qvArrayToString(const qvArray* a) {
  if (a == nullptr || qvGetClassID(a) != qvCHAR_CLASS) return nullptr;
  const std::size_t n = qvGetNumberOfElements(a);
  auto* out = static_cast<char*>(qvCalloc(n + 1, 1));
  const auto* units = static_cast<const char16_t*>(a->data);
  for (std::size_t i = 0; i < n; ++i) out[i] = static_cast<char>(units[i] & 0xFF);
  return out;
}

namespace matrix {

std::string get_string(const qvArray* a, const ustring_converter& converter) {
  const char16_t* units = charUnits(a);
  return converter.do_convert(units, qvGetNumberOfElements(a));
}

std::u16string get_ustring(const qvArray* a) {
  const char16_t* units = charUnits(a);
  return std::u16string(units, qvGetNumberOfElements(a));
}

}  // namespace matrix
