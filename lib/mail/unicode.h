// UTF-8 and UTF-16, and the ICU converters between UTF-16 and other charsets. All text inside the
// library is valid UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <unicode/ucnv.h>

namespace mail {

// The index of the first byte that is not of UTF-8; the size when all are.
size_t find_invalid(std::string_view text);

bool is_ascii(std::string_view text);

inline bool is_inside_character(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Indexes must be where characters begin, or at the end.
inline size_t next_character(std::string_view text, size_t index) {
  do ++index;
  while (index < text.size() && is_inside_character(text[index]));
  return index;
}
inline size_t previous_character(std::string_view text, size_t index) {
  do --index;
  while (is_inside_character(text[index]));
  return index;
}

// Takes the place of the units' former contents.
void to_utf16(std::string_view text, std::u16string& units);
// npos, or the index of a lone surrogate, before which the text then ends.
size_t to_utf8(std::u16string_view units, std::string& text);

// Null when ICU has no such charset. Nothing is substituted, dropped or mapped one way only.
icu::LocalUConverterPointer open_converter(const char* charset);

// What a converter made of a text: all of it, or what is before the character at `stopped`, which
// it could not convert.
struct Outcome {
  bool complete;
  size_t stopped;
};

// Each takes the place of the output's former contents. offsets, when given, receives for each unit
// the index of the byte at which its character begins.
Outcome to_unicode(UConverter* converter, std::string_view bytes, std::u16string& units,
                   std::vector<size_t>* offsets = nullptr);
Outcome from_unicode(UConverter* converter, std::u16string_view units, std::string& bytes);

}  // namespace mail
