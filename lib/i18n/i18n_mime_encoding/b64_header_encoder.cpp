#include <algorithm>

#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "i18n_mime_encoding/base64.h"

namespace i18n_mime {

namespace {

// Groups encoded at once; a word of the usual size has fewer.
constexpr size_t batch_groups = 32;

}  // namespace

B64HeaderEncoder::B64HeaderEncoder(const char* charset_name)
    : GenericEncoder(charset_name), line_cycle(charset_name, I18N_MIME_B64) {}
B64HeaderEncoder::B64HeaderEncoder(const B64HeaderEncoder& other) = default;
B64HeaderEncoder::B64HeaderEncoder(B64HeaderEncoder&& other) = default;
B64HeaderEncoder& B64HeaderEncoder::operator=(const B64HeaderEncoder& other) = default;
B64HeaderEncoder& B64HeaderEncoder::operator=(B64HeaderEncoder&& other) = default;
B64HeaderEncoder::~B64HeaderEncoder() = default;

int B64HeaderEncoder::get_limit_byte_size() const {
  return group_bytes * (line_cycle.get_num_bytes_avail() / group_chars);
}

// Each chunk is a word, and each word a complete base64 text.
void B64HeaderEncoder::encode(i18n::CharsetToCharsetIterPrototype& iter,
                              i18n::StringBuffer<char>& buffer) {
  set_ptrs(iter.get_chunk());
  line_cycle.start_cycle(buffer);
  char text[batch_groups * group_chars];
  while (end - position >= group_bytes) {
    const size_t groups = std::min(static_cast<size_t>(end - position) / group_bytes, batch_groups);
    put_base64_groups(text, position, groups);
    buffer.add_bytes(text, static_cast<int>(groups * group_chars));
    position += groups * group_bytes;
  }
  if (position != end) {
    put_base64_rest(text, position, static_cast<size_t>(end - position));
    buffer.add_bytes(text, group_chars);
  }
  line_cycle.close_cycle(buffer);
}

i18n_mime_encoding_t B64HeaderEncoder::get_encoding_type() const { return I18N_MIME_B64; }

}  // namespace i18n_mime
