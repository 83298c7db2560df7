#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "i18n_mime_encoding/forms.h"

namespace i18n_mime {

B64HeaderEncoder::B64HeaderEncoder(const char* charset_name)
    : GenericEncoder(charset_name), line_cycle_(charset_name, I18N_MIME_B64) {}
B64HeaderEncoder::B64HeaderEncoder(const B64HeaderEncoder& other) = default;
B64HeaderEncoder::B64HeaderEncoder(B64HeaderEncoder&& other) = default;
B64HeaderEncoder& B64HeaderEncoder::operator=(const B64HeaderEncoder& other) = default;
B64HeaderEncoder& B64HeaderEncoder::operator=(B64HeaderEncoder&& other) = default;
B64HeaderEncoder::~B64HeaderEncoder() = default;

int B64HeaderEncoder::get_limit_byte_size() const {
  return group_bytes * (line_cycle_.get_num_bytes_avail() / group_chars);
}

// Each chunk is a word, and each word a complete base64 text.
void B64HeaderEncoder::encode(i18n::CharsetToCharsetIterPrototype& iter,
                              i18n::StringBuffer<char>& buffer) {
  line_cycle_.start_cycle(buffer);
  append_base64(buffer, iter.get_chunk());
  line_cycle_.close_cycle(buffer);
}

i18n_mime_encoding_t B64HeaderEncoder::get_encoding_type() const { return I18N_MIME_B64; }

}  // namespace i18n_mime
