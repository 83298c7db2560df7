// Text in UTF-8, ISO-8859-1 and US-ASCII, looked at directly. Well-formed means what ICU's strict
// converter takes: no surrogates, no longer forms than needed, nothing beyond U+10FFFF.
#pragma once

#include <cstddef>

#include "core/bytes.h"

namespace i18n {

inline bool continues_character(unsigned char byte) { return (byte & 0xc0) == 0x80; }

// The length in bytes of the character at the beginning of a text that is not empty; 0 when it is
// not well-formed UTF-8.
size_t get_character_size(Bytes text);

bool is_utf8(Bytes text);
bool is_ascii(Bytes text);

// How far max_units UTF-16 units reach into UTF-8 text. A pair of which only the first unit is
// among them is left out.
struct Reach {
  size_t bytes;
  size_t units;
  bool is_valid;  // as far as it was looked at
};
Reach reach_units(Bytes text, size_t max_units);

// Each writes the converted text and returns its end, or null when the text is not well-formed or
// the target lacks a character. The room must be that of the largest result and copy_slack.
constexpr size_t copy_slack = 8;
unsigned char* utf8_to_latin1(unsigned char* out, Bytes text);  // at most one byte for one
unsigned char* latin1_to_utf8(unsigned char* out, Bytes text);  // at most two for one

// The size of the result, if there is one.
size_t get_latin1_size(Bytes utf8);
size_t get_utf8_size(Bytes latin1);

}  // namespace i18n
