#include "text/unicode/utf16.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace text {

void to_utf16(std::string_view utf8, std::u16string& units) {
  units.resize(utf8.size());
  size_t size = 0;
  for (size_t index = 0; index < utf8.size();) {
    UChar32 character;
    U8_NEXT_UNSAFE(utf8.data(), index, character);
    U16_APPEND_UNSAFE(units.data(), size, character);
  }
  units.resize(size);
}

size_t to_utf8(std::u16string_view units, std::string& utf8) {
  utf8.clear();
  utf8.reserve(units.size());
  for (size_t index = 0; index < units.size();) {
    const size_t begin = index;
    UChar32 character;
    U16_NEXT(units.data(), index, units.size(), character);
    if (U_IS_SURROGATE(character)) return begin;
    char bytes[U8_MAX_LENGTH];
    size_t size = 0;
    U8_APPEND_UNSAFE(bytes, size, character);
    utf8.append(bytes, size);
  }
  return units.npos;
}

}  // namespace text
