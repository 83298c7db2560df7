// UTF-8, looked at directly. Well-formed means what ICU's strict converter takes: no surrogates, no
// longer forms than needed, nothing beyond U+10FFFF.
#pragma once

#include <cstddef>
#include <string_view>

#include "text/bytes.h"
#include "text/unicode/kernels.h"

namespace text {

constexpr bool continues_character(unsigned char byte) { return (byte & 0xc0) == 0x80; }

// The length in bytes of the character at the beginning of a text that is not empty; 0 when it is
// not well-formed.
size_t get_character_size(Bytes text);

bool is_ascii(Bytes text, const Kernels& kernels = get_kernels());
inline bool is_ascii(std::string_view text) { return is_ascii(as_bytes(text)); }

// Copies what a text begins with of the set, and writes nothing behind it. Returns how much that
// was.
size_t copy_run(unsigned char* out, Bytes text, const AsciiSet& set,
                const Kernels& kernels = get_kernels());

// The index at which the first character begins that is not well-formed; the size when all are.
size_t find_invalid(Bytes text, const Kernels& kernels = get_kernels());
inline size_t find_invalid(std::string_view text) { return find_invalid(as_bytes(text)); }
inline bool is_utf8(Bytes text) { return find_invalid(text) == text.size(); }

// Where the character after the one at an index begins, and the one before it. Of well-formed text;
// indexes must be where characters begin, or at the end.
inline size_t next_character(std::string_view text, size_t index) {
  do ++index;
  while (index < text.size() && continues_character(static_cast<unsigned char>(text[index])));
  return index;
}
inline size_t previous_character(std::string_view text, size_t index) {
  do --index;
  while (continues_character(static_cast<unsigned char>(text[index])));
  return index;
}

// How far max_units UTF-16 units reach into a text. A pair of which only the first unit is among
// them is left out.
struct Reach {
  size_t bytes;
  size_t units;
  bool is_valid;  // as far as it was looked at
};
Reach reach_units(Bytes text, size_t max_units);

}  // namespace text
