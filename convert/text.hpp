// Text in its four roles: names (UTF-8), file names (narrow file-system encoding),
// attribute text (UTF-8), NC_CHAR data (one byte per character); and NC_STRING data.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "qvhost/array.hpp"

// A char row or any empty char array, as UTF-8; else argumentWasNotChar(argName), and
// invalidCharErr for text without a UTF-8 form (a lone surrogate).
std::string getCharText(const qvArray* a, const std::string& argName);
// The same for a name netCDF-C takes as a C string: nameContainsNul(argName) for a NUL.
std::string getName(const qvArray* a, const std::string& argName);

// Any char array, in the narrow file-name encoding; argumentWasNotChar(argName) for
// other classes, invalidCharErr for text the encoding cannot represent, nameContainsNul
// for a NUL.
std::string getFileName(const qvArray* a, const std::string& argName);

// A name netCDF-C returned (NUL-terminated UTF-8) as a 1-by-n char row.
qvArrayPtr makeNameResult(const char* utf8);
// Text the library makes itself (pure ASCII) as a 1-by-n char row.
qvArrayPtr makeAsciiText(std::string_view text);

// A char array's text as UTF-8 bytes (attribute text: length in bytes, not characters).
std::string getAttributeText(const qvArray* a);

// NC_CHAR data: the low byte of each UTF-16 code unit, one byte per element.
std::vector<char> narrowCharData(const qvArray* a);

// Widens bytes into char elements by sign extension (0x80..0xFF -> 0xFF80..0xFFFF).
void widenCharData(const char* bytes, std::size_t n, char16_t* out) noexcept;

// NC_STRING data to write: UTF-8 copies of a string array's elements, kept alive with
// the char* table netCDF-C reads. A missing element raises MissingNotSupported.
class Utf8StringList {
 public:
  explicit Utf8StringList(const qvArray* stringArray);
  const char** pointers() noexcept { return pointers_.data(); }
  std::size_t size() const noexcept { return pointers_.size(); }

 private:
  std::vector<std::string> texts_;
  std::vector<const char*> pointers_;
};
