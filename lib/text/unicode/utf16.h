// UTF-16 and UTF-8, each from the other.
#pragma once

#include <string>
#include <string_view>

#include "text/bytes.h"
#include "text/unicode/kernels.h"

namespace text {

// Of well-formed text.
size_t count_units(Bytes utf8, const Kernels& kernels = get_kernels());

// The index at which the character begins that has a unit of a text, which must be well-formed.
size_t find_byte_of_unit(Bytes utf8, size_t unit);

// Writes the units of well-formed text and returns their end. There must be room for a unit for
// each byte, and for kernel_slack more.
char16_t* put_units(char16_t* out, Bytes utf8, const Kernels& kernels = get_kernels());

// The same for a piece of the text at its beginning, of about that many bytes: at most most_beyond
// more, and fewer where that is faster. Moves out, and returns how many bytes those were.
constexpr size_t most_beyond = 4;
size_t put_some_units(char16_t*& out, Bytes utf8, size_t about,
                      const Kernels& kernels = get_kernels());

// Each takes the place of what the target held.
void to_utf16(std::string_view utf8, std::u16string& units);  // well-formed
// npos, or the index of a lone surrogate, before which the text then ends.
size_t to_utf8(std::u16string_view units, std::string& utf8);

}  // namespace text
