// ISO-8859-1 and UTF-8, each from the other.
#pragma once

#include <cstddef>

#include "text/bytes.h"

namespace text {

// Each writes the converted text and returns its end, or null when the text is not well-formed or
// the target lacks a character. The room must be that of the largest result and copy_slack.
constexpr size_t copy_slack = 8;
unsigned char* utf8_to_latin1(unsigned char* out, Bytes text);  // at most one byte for one
unsigned char* latin1_to_utf8(unsigned char* out, Bytes text);  // at most two for one

// The size of the result, if there is one.
size_t get_latin1_size(Bytes utf8);
size_t get_utf8_size(Bytes latin1);

}  // namespace text
