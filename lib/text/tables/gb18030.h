// The four-byte forms of GB18030, which are numbered one after the other: first what the shorter
// forms lack up to U+FFFF, later all characters beyond that.
#pragma once

#include <cstdint>
#include <optional>

namespace text::gb18030 {

constexpr std::uint32_t first_number_beyond = 189000;

// Of four bytes, none when they are no such form.
inline std::optional<std::uint32_t> get_number(const unsigned char* bytes) {
  const auto from_81 = [](unsigned byte) { return byte - 0x81; };
  const auto from_30 = [](unsigned byte) { return byte - 0x30; };
  if (from_81(bytes[0]) > 125 || from_30(bytes[1]) > 9 || from_81(bytes[2]) > 125 ||
      from_30(bytes[3]) > 9) {
    return std::nullopt;
  }
  return ((from_81(bytes[0]) * 10 + from_30(bytes[1])) * 126 + from_81(bytes[2])) * 10 +
         from_30(bytes[3]);
}

// The bytes as one number, the last lowest.
inline std::uint32_t get_code(std::uint32_t number) {
  const std::uint32_t last = 0x30 + number % 10, third = 0x81 + number / 10 % 126;
  const std::uint32_t second = 0x30 + number / 1260 % 10, first = 0x81 + number / 12600;
  return first << 24 | second << 16 | third << 8 | last;
}

inline std::optional<char32_t> get_character_beyond(std::uint32_t number) {
  const char32_t character = number - first_number_beyond + 0x10000;
  return number >= first_number_beyond && character <= 0x10ffff ? std::optional(character)
                                                                : std::nullopt;
}

inline std::uint32_t get_code_beyond(char32_t character) {
  return get_code(character - 0x10000 + first_number_beyond);
}

}  // namespace text::gb18030
