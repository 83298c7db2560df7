#include <algorithm>

#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "i18n_mime_encoding/base64.h"

namespace i18n_mime {

namespace {

constexpr int max_body_line = 76;
// Groups encoded at once: more than a chunk of the library's own iterators has.
constexpr size_t batch_groups = 128;

}  // namespace

B64BodyEncoder::B64BodyEncoder(const char* charset_name)
    : GenericEncoder(charset_name),
      line_cycle(max_body_line, nullptr, nullptr, "\r\n"),
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
  if (carry_size != 0) complete_carried_group(buffer);
  char text[batch_groups * group_chars];
  while (end - position >= group_bytes) {
    const size_t groups = std::min(static_cast<size_t>(end - position) / group_bytes, batch_groups);
    put_base64_groups(text, position, groups);
    append_folded(text, static_cast<int>(groups * group_chars), buffer);
    position += groups * group_bytes;
  }
  while (position != end) carry[carry_size++] = *position++;
}

// Fills up the group that the last chunk began, if this one has enough for it.
void B64BodyEncoder::complete_carried_group(i18n::StringBuffer<char>& buffer) {
  if (end - position < group_bytes - carry_size) return;
  unsigned char group[group_bytes];
  unsigned char* next = std::copy_n(carry, carry_size, group);
  while (next != group + group_bytes) *next++ = *position++;
  carry_size = 0;
  char text[group_chars];
  put_base64_groups(text, group, 1);
  append_folded(text, group_chars, buffer);
}

// The line cycle places the first group of each line, and counts the others that fit as one run.
void B64BodyEncoder::append_folded(const char* text, int length, i18n::StringBuffer<char>& buffer) {
  while (length > 0) {
    line_cycle.move_line(buffer, group_chars);
    const int room = line_cycle.get_room() / group_chars * group_chars;
    const int others = std::min(room, length - group_chars);
    line_cycle.extend_line(others);
    const int run = group_chars + others;
    buffer.add_bytes(text, run);
    text += run;
    length -= run;
  }
}

void B64BodyEncoder::complete(i18n::StringBuffer<char>& buffer) {
  if (carry_size == 0) return;
  char text[group_chars];
  put_base64_rest(text, carry, static_cast<size_t>(carry_size));
  carry_size = 0;
  append_folded(text, group_chars, buffer);
}

i18n_mime_encoding_t B64BodyEncoder::get_encoding_type() const { return I18N_MIME_B64; }

}  // namespace i18n_mime
