#include <string_view>

#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "i18n_mime_encoding/forms.h"

namespace i18n_mime {

QPHeaderEncoder::QPHeaderEncoder(const char* charset_name)
    : GenericEncoder(charset_name), line_cycle_(charset_name, I18N_MIME_QP) {}
QPHeaderEncoder::QPHeaderEncoder(const QPHeaderEncoder& other) = default;
QPHeaderEncoder::QPHeaderEncoder(QPHeaderEncoder&& other) = default;
QPHeaderEncoder& QPHeaderEncoder::operator=(const QPHeaderEncoder& other) = default;
QPHeaderEncoder& QPHeaderEncoder::operator=(QPHeaderEncoder&& other) = default;
QPHeaderEncoder::~QPHeaderEncoder() = default;

void QPHeaderEncoder::encode(i18n::CharsetToCharsetIterPrototype& iter,
                             i18n::StringBuffer<char>& buffer) {
  if (iter.get_chunk().empty()) line_cycle_.move_line(buffer, 0);  // an empty text has a word, too
  i18n::CharIter<char> characters = iter.get_char_iter();
  while (characters.has_next_chunk()) {
    characters.next_chunk();
    const std::string_view character = characters.get_chunk();
    int size = 0;
    for (const char byte : character) size += get_form_size(table, byte);
    line_cycle_.move_line(buffer, size);
    for (const char byte : character) append_form(buffer, table, byte);
  }
}

void QPHeaderEncoder::complete(i18n::StringBuffer<char>& buffer) {
  line_cycle_.close_cycle(buffer);
}

i18n_mime_encoding_t QPHeaderEncoder::get_encoding_type() const { return I18N_MIME_QP; }

}  // namespace i18n_mime
