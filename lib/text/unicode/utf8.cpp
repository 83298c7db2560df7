#include "text/unicode/utf8.h"

#include <algorithm>

#include "text/unicode/words.h"

namespace text {

namespace {

bool are_continuations(const unsigned char* bytes, size_t count) {
  return std::all_of(bytes, bytes + count, continues_character);
}

size_t count_ascii(Bytes text) {
  size_t count = 0;
  while (text.size() - count >= word_size) {
    const size_t more = count_leading_ascii(load_word(text.data() + count));
    count += more;
    if (more != word_size) return count;
  }
  while (count != text.size() && text[count] < 0x80) ++count;
  return count;
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

bool is_ascii(Bytes text, const Kernels& kernels) {
  if (text.size() >= kernel_stretch) text = text.subspan(kernels.skip_ascii(text));
  return count_ascii(text) == text.size();
}

size_t copy_run(unsigned char* out, Bytes text, const AsciiSet& set, const Kernels& kernels) {
  size_t done = text.size() >= kernel_stretch ? kernels.copy_run(out, text, set) : 0;
  for (; done != text.size() && set.has(text[done]); ++done) out[done] = text[done];
  return done;
}

size_t find_invalid(Bytes text, const Kernels& kernels) {
  size_t index = text.size() >= kernel_stretch ? kernels.skip_utf8(text) : 0;
  if (const Bytes rest = text.subspan(index); LastStretch::fits(rest)) {
    const LastStretch last(rest);
    if (kernels.skip_utf8(last.in_stretches()) >= rest.size()) return text.size();
  }
  for (;;) {
    index += count_ascii(text.subspan(index));
    if (index == text.size()) return index;
    const size_t size = get_character_size(text.subspan(index));
    if (size == 0) return index;
    index += size;
  }
}

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

}  // namespace text
