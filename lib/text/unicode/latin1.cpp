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
    const size_t more = count_leading_ascii(word);
    count += more;
    if (more != word_size) return count;
  }
  for (; count != text.size() && text[count] < 0x80; ++count) out[count] = text[count];
  return count;
}

}  // namespace

unsigned char* utf8_to_latin1(unsigned char* out, Bytes text, const Kernels& kernels) {
  if (text.size() >= kernel_stretch) text = text.subspan(kernels.utf8_to_latin1(out, text));
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

unsigned char* latin1_to_utf8(unsigned char* out, Bytes text, const Kernels& kernels) {
  if (text.size() >= kernel_stretch) text = text.subspan(kernels.latin1_to_utf8(out, text));
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

size_t get_utf8_size(Bytes latin1, const Kernels& kernels) {
  size_t size = latin1.size();
  if (latin1.size() >= kernel_stretch) latin1 = latin1.subspan(kernels.count_high(size, latin1));
  for (const unsigned char byte : latin1) size += byte >> 7;
  return size;
}

}  // namespace text
