#include "text/unicode/latin1.h"

#include "text/unicode/utf8.h"
#include "text/unicode/words.h"

namespace text {

namespace {

static_assert(word_size <= copy_slack);

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

}  // namespace

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

}  // namespace text
