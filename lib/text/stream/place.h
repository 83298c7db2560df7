// Lines and columns, as editors count them.
#pragma once

#include <cstdint>
#include <string_view>

namespace text {

// Where a character stands. Lines end at LF, CR LF and CR; a column is a code point.
struct Place {
  std::uint64_t line = 1;
  std::uint64_t column = 1;
  bool is_after_cr = false;

  // Each goes past whole characters.
  void advance(std::u16string_view units);
  void advance(std::string_view utf8);
  // In a charset with one byte a character, where line ends are those of ASCII.
  void advance_by_bytes(std::string_view text);
};

}  // namespace text
