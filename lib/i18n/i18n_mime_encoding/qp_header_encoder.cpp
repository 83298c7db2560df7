#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "i18n_mime_encoding/qp_form.h"

namespace i18n_mime {

namespace {

// Bytes written at once: more than the escapes of a character take.
constexpr int max_run = 64;

}  // namespace

QPHeaderEncoder::QPHeaderEncoder(const char* charset_name)
    : GenericEncoder(charset_name), line_cycle(charset_name, I18N_MIME_QP) {}
QPHeaderEncoder::QPHeaderEncoder(const QPHeaderEncoder& other) = default;
QPHeaderEncoder::QPHeaderEncoder(QPHeaderEncoder&& other) = default;
QPHeaderEncoder& QPHeaderEncoder::operator=(const QPHeaderEncoder& other) = default;
QPHeaderEncoder& QPHeaderEncoder::operator=(QPHeaderEncoder&& other) = default;
QPHeaderEncoder::~QPHeaderEncoder() = default;

void QPHeaderEncoder::encode(i18n::CharsetToCharsetIterPrototype& iter,
                             i18n::StringBuffer<char>& buffer) {
  if (iter.get_chunk().empty()) {
    line_cycle.move_line(buffer, 0);  // an empty text has a word, too
    return;
  }
  i18n::CharIter<char> characters = iter.get_char_iter();
  while (characters.has_next_chunk()) {
    characters.next_chunk();
    const std::string& character = characters.get_chunk();
    line_cycle.move_line(buffer, get_byte_size_qp_encoded_str(character));
    set_ptrs(character);
    while (position != end) {
      char run[max_run + forms_slack];
      const char* const run_end = put_forms(run, run + max_run, table, position, end);
      buffer.add_bytes(run, static_cast<int>(run_end - run));
    }
  }
}

void QPHeaderEncoder::complete(i18n::StringBuffer<char>& buffer) { line_cycle.close_cycle(buffer); }

i18n_mime_encoding_t QPHeaderEncoder::get_encoding_type() const { return I18N_MIME_QP; }

}  // namespace i18n_mime
