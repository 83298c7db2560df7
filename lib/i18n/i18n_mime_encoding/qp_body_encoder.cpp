#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "i18n_mime_encoding/qp_form.h"

namespace i18n_mime {

namespace {

constexpr int max_body_line = 76;

bool ends_line_badly(char byte) { return byte == ' ' || byte == '\t'; }

}  // namespace

QPBodyEncoder::QPBodyEncoder(const char* charset_name)
    : GenericEncoder(charset_name), line_cycle(max_body_line, nullptr, "=", "\r\n") {}
QPBodyEncoder::QPBodyEncoder(const QPBodyEncoder& other) = default;
QPBodyEncoder::QPBodyEncoder(QPBodyEncoder&& other) = default;
QPBodyEncoder& QPBodyEncoder::operator=(const QPBodyEncoder& other) = default;
QPBodyEncoder& QPBodyEncoder::operator=(QPBodyEncoder&& other) = default;
QPBodyEncoder::~QPBodyEncoder() = default;

// The line cycle places the first piece of each line; what else fits on that line is then written
// and counted as one run.
void QPBodyEncoder::encode(i18n::CharsetToCharsetIterPrototype& iter,
                           i18n::StringBuffer<char>& buffer) {
  set_ptrs(iter.get_chunk());
  while (position != end) {
    line_cycle.move_line(buffer, table[*position] == 1 ? escape_size : literal_size);
    char run[max_body_line + escape_size + max_form_size];
    char* out = put_form(run, *position, table[*position] == 1);
    ++position;
    const char* const first_piece_end = out;
    const char* const line_end = out + line_cycle.get_room();
    while (position != end) {
      char* const piece_end = put_form(out, *position, table[*position] == 1);
      if (piece_end > line_end) break;
      out = piece_end;
      ++position;
    }
    line_cycle.extend_line(static_cast<int>(out - first_piece_end));
    buffer.add_bytes(run, static_cast<int>(out - run));
  }
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
  char form[max_form_size];
  put_form(form, static_cast<unsigned char>(byte), true);
  buffer.add_bytes(form, escape_size);
}

i18n_mime_encoding_t QPBodyEncoder::get_encoding_type() const { return I18N_MIME_QP; }

}  // namespace i18n_mime
