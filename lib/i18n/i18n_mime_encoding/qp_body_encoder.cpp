#include <algorithm>
#include <bit>
#include <cstring>

#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "i18n_mime_encoding/escape_marks.h"
#include "i18n_mime_encoding/line_limits.h"
#include "i18n_mime_encoding/qp_form.h"

namespace i18n_mime {

namespace {

// Of the lines put together before they go to the buffer: three bytes of form for each byte of a
// piece, a fold for each line of those, and the slack that put_forms() needs.
constexpr size_t lines_size = (escape_size + 1) * EscapeMarks::max_bytes;

bool ends_line_badly(char byte) { return byte == ' ' || byte == '\t'; }

// Writes the forms of the bytes from position on, as many as end at or before limit, and moves
// position past them. Returns the end of the forms; there must be room for a stretch beyond it.
//
// Literals are copied by stretches. From an escape on, bytes go form by form: just a few where
// escapes are rare, the rest of the stretch where they are not. How many is rare and how many are a
// few was tried out on the texts of tools/bench.
char* put_forms(char* out, const char* limit, const EscapeMarks& marks,
                const unsigned char*& position, const unsigned char* end) {
  constexpr int rare = 8;
  constexpr std::ptrdiff_t few_forms = 2;
  const unsigned char* next = position;
  while (next != end) {
    std::uint32_t escapes = marks.get_from(next);
    std::ptrdiff_t row = EscapeMarks::stretch;
    if (end - next >= EscapeMarks::stretch) {
      const auto literals = std::min<std::ptrdiff_t>(std::countr_zero(escapes), limit - out);
      std::memcpy(out, next, EscapeMarks::stretch);
      out += literals;
      next += literals;
      if (literals == EscapeMarks::stretch) continue;
      row -= literals;
      if (std::popcount(escapes) <= rare) row = std::min(row, few_forms);
      escapes >>= literals;
    }
    const unsigned char* const row_end = next + std::min(row, end - next);
    while (next != row_end) {
      char* const form_end = put_form(out, escapes & 1, *next);
      if (form_end > limit) {
        position = next;
        return out;
      }
      out = form_end;
      escapes >>= 1;
      ++next;
    }
  }
  position = next;
  return out;
}

}  // namespace

QPBodyEncoder::QPBodyEncoder(const char* charset_name)
    : GenericEncoder(charset_name),
      line_cycle(max_body_line, nullptr, soft_break_mark, body_line_break) {}
QPBodyEncoder::QPBodyEncoder(const QPBodyEncoder& other) = default;
QPBodyEncoder::QPBodyEncoder(QPBodyEncoder&& other) = default;
QPBodyEncoder& QPBodyEncoder::operator=(const QPBodyEncoder& other) = default;
QPBodyEncoder& QPBodyEncoder::operator=(QPBodyEncoder&& other) = default;
QPBodyEncoder::~QPBodyEncoder() = default;

void QPBodyEncoder::encode(i18n::CharsetToCharsetIterPrototype& iter,
                           i18n::StringBuffer<char>& buffer) {
  set_ptrs(iter.get_chunk());
  while (position != end) {
    append_lines(buffer, position + std::min(end - position, EscapeMarks::max_bytes));
  }
}

// Encodes up to piece_end.
void QPBodyEncoder::append_lines(i18n::StringBuffer<char>& buffer, const unsigned char* piece_end) {
  const EscapeMarks marks(table, position, piece_end);
  line_cycle.open_line(buffer);
  char lines[lines_size];
  char* out = lines;
  for (;;) {
    char* const line_end = put_forms(out, out + line_cycle.get_room(), marks, position, piece_end);
    line_cycle.extend_line(static_cast<int>(line_end - out));
    out = line_end;
    if (position == piece_end) break;
    out = line_cycle.put_fold(out);
  }
  buffer.add_bytes(lines, static_cast<int>(out - lines));
}

// Transport may strip blanks at the end of a line. Before a soft line break there are none.
void QPBodyEncoder::complete(i18n::StringBuffer<char>& buffer) {
  const char* last = buffer.back_char();
  if (last == nullptr) return;
  const char byte = *last;
  if (!ends_line_badly(byte)) {
    buffer.add_char(byte);
    return;
  }
  // The blank that was taken back still counts on its line.
  line_cycle.move_line(buffer, escape_size);
  char form[escape_size + form_slack];
  put_form(form, true, static_cast<unsigned char>(byte));
  buffer.add_bytes(form, escape_size);
}

i18n_mime_encoding_t QPBodyEncoder::get_encoding_type() const { return I18N_MIME_QP; }

}  // namespace i18n_mime
