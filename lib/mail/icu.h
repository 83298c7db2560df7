// UTF-8 and UTF-16, and the ICU converters between UTF-16 and other charsets. All text inside the
// library is valid UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <unicode/ucnv.h>

#include "text/unicode/utf16.h"
#include "text/unicode/utf8.h"

namespace mail {

using text::find_invalid;
using text::is_ascii;
using text::next_character;
using text::previous_character;
using text::to_utf16;
using text::to_utf8;

inline bool is_inside_character(char byte) {
  return text::continues_character(static_cast<unsigned char>(byte));
}

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
