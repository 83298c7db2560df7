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

// The line cycle places the first piece of each line; what else fits on that line is written and
// counted with it as one run.
void QPBodyEncoder::encode(i18n::CharsetToCharsetIterPrototype& iter,
                           i18n::StringBuffer<char>& buffer) {
  set_ptrs(iter.get_chunk());
  while (position != end) {
    const int first_piece = get_form_size(table, *position);
    line_cycle.move_line(buffer, first_piece);
    char run[max_body_line + forms_slack];
    const char* const limit = run + first_piece + line_cycle.get_room();
    const int length = static_cast<int>(put_forms(run, limit, table, position, end) - run);
    line_cycle.extend_line(length - first_piece);
    buffer.add_bytes(run, length);
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
  char form[escape_size + forms_slack];
  put_escape(form, static_cast<unsigned char>(byte));
  buffer.add_bytes(form, escape_size);
}

i18n_mime_encoding_t QPBodyEncoder::get_encoding_type() const { return I18N_MIME_QP; }

}  // namespace i18n_mime
