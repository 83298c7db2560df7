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
  char text[(1 + batch_groups) * group_chars];
  char* out = put_carried_group(text);
  while (end - position >= group_bytes) {
    const size_t groups = std::min(static_cast<size_t>(end - position) / group_bytes, batch_groups);
    put_base64_groups(out, position, groups);
    out += groups * group_chars;
    position += groups * group_bytes;
    line_cycle.append_pieces(buffer, text, static_cast<int>(out - text), group_chars);
    out = text;
  }
  line_cycle.append_pieces(buffer, text, static_cast<int>(out - text), group_chars);
  while (position != end) carry[carry_size++] = *position++;
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
  line_cycle.append_pieces(buffer, text, group_chars, group_chars);
}

i18n_mime_encoding_t B64BodyEncoder::get_encoding_type() const { return I18N_MIME_B64; }

}  // namespace i18n_mime
