// Text looked at eight bytes at a time.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace text {

constexpr size_t word_size = sizeof(std::uint64_t);

inline std::uint64_t load_word(const unsigned char* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, word_size);
  return word;
}

// How many bytes at the beginning of a word in memory are ASCII.
inline size_t count_leading_ascii(std::uint64_t word) {
  const std::uint64_t others = word & 0x8080808080808080;
  const int bits = std::endian::native == std::endian::little ? std::countr_zero(others)
                                                              : std::countl_zero(others);
  return static_cast<size_t>(bits) / 8;
}

}  // namespace text
