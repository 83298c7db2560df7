#include "core/unicode.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace i18n {

namespace {

constexpr size_t word_size = sizeof(std::uint64_t);
static_assert(word_size <= copy_slack);

std::uint64_t load_word(const unsigned char* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, word_size);
  return word;
}

// How many bytes at the beginning of a word in memory are ASCII.
size_t count_ascii(std::uint64_t word) {
  const std::uint64_t others = word & 0x8080808080808080;
  const int bits = std::endian::native == std::endian::little ? std::countr_zero(others)
                                                              : std::countl_zero(others);
  return static_cast<size_t>(bits) / 8;
}

size_t count_ascii(Bytes text) {
  size_t count = 0;
  while (text.size() - count >= word_size) {
    const size_t more = count_ascii(load_word(text.data() + count));
    count += more;
    if (more != word_size) return count;
  }
  while (count != text.size() && text[count] < 0x80) ++count;
  return count;
}

// Copies the ASCII that a text begins with, whole words at a time. Returns how much that was.
size_t copy_ascii(unsigned char* out, Bytes text) {
  size_t count = 0;
  while (text.size() - count >= word_size) {
    const std::uint64_t word = load_word(text.data() + count);
    std::memcpy(out + count, &word, word_size);
    const size_t more = count_ascii(word);
    count += more;
    if (more != word_size) return count;
  }
  for (; count != text.size() && text[count] < 0x80; ++count) out[count] = text[count];
  return count;
}

bool are_continuations(const unsigned char* bytes, size_t count) {
  return std::all_of(bytes, bytes + count, continues_character);
}

}  // namespace

size_t get_character_size(Bytes text) {
  const unsigned char* bytes = text.data();
  const unsigned lead = bytes[0];
  if (lead < 0x80) return 1;
  if (lead < 0xc2) return 0;
  if (lead < 0xe0) return text.size() >= 2 && are_continuations(bytes + 1, 1) ? 2 : 0;
  if (lead < 0xf0) {
    if (text.size() < 3 || !are_continuations(bytes + 1, 2)) return 0;
    const unsigned first_bits = (lead & 15) << 6 | (bytes[1] & 63);  // all but the last six
    const bool is_surrogate = first_bits >> 5 == 0xd800 >> 11;
    return first_bits >= 0x800 >> 6 && !is_surrogate ? 3 : 0;
  }
  if (text.size() < 4 || lead > 0xf4 || !are_continuations(bytes + 1, 3)) return 0;
  const unsigned first_bits = (lead & 7) << 6 | (bytes[1] & 63);  // all but the last twelve
  return first_bits >= 0x10000 >> 12 && first_bits <= 0x10ffff >> 12 ? 4 : 0;
}

bool is_utf8(Bytes text) {
  for (;;) {
    text = text.subspan(count_ascii(text));
    if (text.empty()) return true;
    const size_t size = get_character_size(text);
    if (size == 0) return false;
    text = text.subspan(size);
  }
}

bool is_ascii(Bytes text) { return count_ascii(text) == text.size(); }

Reach reach_units(Bytes text, size_t max_units) {
  Reach reach{0, 0, true};
  while (reach.units != max_units && reach.bytes != text.size()) {
    const Bytes rest = text.subspan(reach.bytes);
    const size_t ascii = count_ascii(rest.first(std::min(rest.size(), max_units - reach.units)));
    reach.bytes += ascii;
    reach.units += ascii;
    if (ascii != 0) continue;
    const size_t size = get_character_size(rest);
    const size_t units = size == 4 ? 2 : 1;
    if (size == 0) {
      reach.is_valid = false;
      return reach;
    }
    if (units > max_units - reach.units) return reach;
    reach.bytes += size;
    reach.units += units;
  }
  return reach;
}

unsigned char* utf8_to_latin1(unsigned char* out, Bytes text) {
  for (;;) {
    const size_t ascii = copy_ascii(out, text);
    out += ascii;
    text = text.subspan(ascii);
    if (text.empty()) return out;
    const bool is_latin1 =
        (text[0] & 0xfe) == 0xc2 && text.size() > 1 && continues_character(text[1]);
    if (!is_latin1) return nullptr;
    *out++ = static_cast<unsigned char>(text[0] << 6 | (text[1] & 63));
    text = text.subspan(2);
  }
}

unsigned char* latin1_to_utf8(unsigned char* out, Bytes text) {
  for (;;) {
    const size_t ascii = copy_ascii(out, text);
    out += ascii;
    text = text.subspan(ascii);
    if (text.empty()) return out;
    *out++ = static_cast<unsigned char>(0xc0 | text[0] >> 6);
    *out++ = static_cast<unsigned char>(0x80 | (text[0] & 63));
    text = text.subspan(1);
  }
}

size_t get_latin1_size(Bytes utf8) {
  size_t size = 0;
  for (const unsigned char byte : utf8) size += !continues_character(byte);
  return size;
}

size_t get_utf8_size(Bytes latin1) {
  size_t size = latin1.size();
  for (const unsigned char byte : latin1) size += byte >> 7;
  return size;
}

}  // namespace i18n
