#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "i18n_mime_encoding/qp_form.h"

namespace i18n_mime {

namespace {

constexpr int max_body_line = 76;
// Lines put together before they go to the buffer.
constexpr int batch_size = 8 * max_body_line;

bool ends_line_badly(char byte) { return byte == ' ' || byte == '\t'; }

}  // namespace

QPBodyEncoder::QPBodyEncoder(const char* charset_name)
    : GenericEncoder(charset_name), line_cycle(max_body_line, nullptr, "=", "\r\n") {}
QPBodyEncoder::QPBodyEncoder(const QPBodyEncoder& other) = default;
QPBodyEncoder::QPBodyEncoder(QPBodyEncoder&& other) = default;
QPBodyEncoder& QPBodyEncoder::operator=(const QPBodyEncoder& other) = default;
QPBodyEncoder& QPBodyEncoder::operator=(QPBodyEncoder&& other) = default;
QPBodyEncoder::~QPBodyEncoder() = default;

void QPBodyEncoder::encode(i18n::CharsetToCharsetIterPrototype& iter,
                           i18n::StringBuffer<char>& buffer) {
  set_ptrs(iter.get_chunk());
  if (position == end) return;
  line_cycle.open_line(buffer);
  char lines[batch_size + max_body_line + forms_slack];
  char* out = lines;
  for (;;) {
    char* const line_end = put_forms(out, out + line_cycle.get_room(), table, position, end);
    line_cycle.extend_line(static_cast<int>(line_end - out));
    out = line_end;
    if (position == end) break;
    out = line_cycle.put_fold(out);
    if (out - lines > batch_size) {
      buffer.add_bytes(lines, static_cast<int>(out - lines));
      out = lines;
    }
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
  char form[escape_size + forms_slack];
  put_escape(form, static_cast<unsigned char>(byte));
  buffer.add_bytes(form, escape_size);
}

i18n_mime_encoding_t QPBodyEncoder::get_encoding_type() const { return I18N_MIME_QP; }

}  // namespace i18n_mime
