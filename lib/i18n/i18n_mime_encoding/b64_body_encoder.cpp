#include <algorithm>
#include <cstddef>
#include <cstring>

#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "i18n_mime_encoding/base64.h"
#include "i18n_mime_encoding/line_limits.h"

namespace i18n_mime {

namespace {

// Groups encoded at once: more than a chunk of the library's own iterators has.
constexpr size_t batch_groups = 128;
constexpr size_t batch_chars = (1 + batch_groups) * group_chars;
constexpr size_t batch_lines_size = batch_chars + batch_chars / 16;  // line breaks included

}  // namespace

B64BodyEncoder::B64BodyEncoder(const char* charset_name)
    : GenericEncoder(charset_name),
      line_cycle(max_body_line, nullptr, nullptr, body_line_break),
      carry{},
      carry_size(0) {}
B64BodyEncoder::B64BodyEncoder(const B64BodyEncoder& other) = default;
B64BodyEncoder::B64BodyEncoder(B64BodyEncoder&& other) = default;
B64BodyEncoder& B64BodyEncoder::operator=(const B64BodyEncoder& other) = default;
B64BodyEncoder& B64BodyEncoder::operator=(B64BodyEncoder&& other) = default;
B64BodyEncoder::~B64BodyEncoder() = default;

void B64BodyEncoder::encode(i18n::CharsetToCharsetIterPrototype& iter,
                            i18n::StringBuffer<char>& buffer) {
  set_ptrs(iter.get_chunk());
  char text[batch_chars + max_body_line];
  char* text_end = put_carried_group(text);
  while (end - position >= group_bytes) {
    const size_t groups = std::min(static_cast<size_t>(end - position) / group_bytes, batch_groups);
    put_base64_groups(text_end, position, groups);
    position += groups * group_bytes;
    append_lines(buffer, text, text_end + groups * group_chars);
    text_end = text;
  }
  append_lines(buffer, text, text_end);
  while (position != end) carry[carry_size++] = *position++;
}

// Takes at most batch_chars. There is room for the longest line beyond text_end: copying that much,
// whatever of it is used, is a few moves instead of a call.
void B64BodyEncoder::append_lines(i18n::StringBuffer<char>& buffer, const char* text,
                                  const char* text_end) {
  if (text == text_end) return;
  line_cycle.open_line(buffer);
  char lines[batch_lines_size + max_body_line];
  char* out = lines;
  for (;;) {
    const std::ptrdiff_t room = line_cycle.get_room();
    const auto fitting = std::min(room / group_chars * group_chars, text_end - text);
    std::memcpy(out, text, max_body_line);
    out += fitting;
    text += fitting;
    line_cycle.extend_line(static_cast<int>(fitting));
    if (text == text_end) break;
    out = line_cycle.put_fold(out);
  }
  buffer.add_bytes(lines, static_cast<int>(out - lines));
}

// The group that the last chunk began, if there is one and this chunk has enough for the rest of
// it. Returns the end of what it wrote.
char* B64BodyEncoder::put_carried_group(char* out) {
  if (carry_size == 0 || end - position < group_bytes - carry_size) return out;
  unsigned char group[group_bytes];
  unsigned char* next = std::copy_n(carry, carry_size, group);
  while (next != group + group_bytes) *next++ = *position++;
  carry_size = 0;
  put_base64_groups_plain(out, group, 1);
  return out + group_chars;
}

void B64BodyEncoder::complete(i18n::StringBuffer<char>& buffer) {
  if (carry_size == 0) return;
  char text[group_chars];
  put_base64_rest(text, carry, static_cast<size_t>(carry_size));
  carry_size = 0;
  line_cycle.move_line(buffer, group_chars);
  buffer.add_bytes(text, group_chars);
}

i18n_mime_encoding_t B64BodyEncoder::get_encoding_type() const { return I18N_MIME_B64; }

}  // namespace i18n_mime
