#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "i18n_mime_encoding/forms.h"
#include "i18n_mime_encoding/line_limits.h"

namespace i18n_mime {

QPBodyEncoder::QPBodyEncoder(const char* charset_name)
    : GenericEncoder(charset_name),
      line_cycle_(max_quoted_printable_line, nullptr, soft_break_mark, body_line_break) {}
QPBodyEncoder::QPBodyEncoder(const QPBodyEncoder& other) = default;
QPBodyEncoder::QPBodyEncoder(QPBodyEncoder&& other) = default;
QPBodyEncoder& QPBodyEncoder::operator=(const QPBodyEncoder& other) = default;
QPBodyEncoder& QPBodyEncoder::operator=(QPBodyEncoder&& other) = default;
QPBodyEncoder::~QPBodyEncoder() = default;

void QPBodyEncoder::encode(i18n::CharsetToCharsetIterPrototype& iter,
                           i18n::StringBuffer<char>& buffer) {
  for (const char byte : iter.get_chunk()) {
    line_cycle_.move_line(buffer, get_form_size(table, byte));
    append_form(buffer, table, byte);
  }
}

// Transport may strip blanks at the end of a line. Before a soft line break there are none.
void QPBodyEncoder::complete(i18n::StringBuffer<char>& buffer) {
  const char* last = buffer.back_char();
  if (last == nullptr) return;
  const char byte = *last;
  if (byte != ' ' && byte != '\t') {
    buffer.add_char(byte);
    return;
  }
  // The blank that was taken back still counts on its line.
  line_cycle_.move_line(buffer, escape_size);
  append_escape(buffer, byte);
}

i18n_mime_encoding_t QPBodyEncoder::get_encoding_type() const { return I18N_MIME_QP; }

}  // namespace i18n_mime
