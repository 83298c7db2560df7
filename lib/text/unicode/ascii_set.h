// A set of ASCII characters.
#pragma once

#include <cstdint>

namespace text {

struct AsciiSet {
  void add(unsigned char character) {
    bits[character >> 3] = static_cast<std::uint8_t>(bits[character >> 3] | 1 << (character & 7));
  }
  bool has(unsigned char byte) const {
    return byte < 0x80 && (bits[byte >> 3] >> (byte & 7) & 1) != 0;
  }

  std::uint8_t bits[16] = {};  // eight characters in each
};

}  // namespace text
