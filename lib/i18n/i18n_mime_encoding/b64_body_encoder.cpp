#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "i18n_mime_encoding/forms.h"
#include "i18n_mime_encoding/line_limits.h"

namespace i18n_mime {

B64BodyEncoder::B64BodyEncoder(const char* charset_name)
    : GenericEncoder(charset_name),
      line_cycle_(max_base64_line, nullptr, nullptr, body_line_break),
      carry_{},
      carry_size_(0) {}
B64BodyEncoder::B64BodyEncoder(const B64BodyEncoder& other) = default;
B64BodyEncoder::B64BodyEncoder(B64BodyEncoder&& other) = default;
B64BodyEncoder& B64BodyEncoder::operator=(const B64BodyEncoder& other) = default;
B64BodyEncoder& B64BodyEncoder::operator=(B64BodyEncoder&& other) = default;
B64BodyEncoder::~B64BodyEncoder() = default;

void B64BodyEncoder::encode(i18n::CharsetToCharsetIterPrototype& iter,
                            i18n::StringBuffer<char>& buffer) {
  for (const char byte : iter.get_chunk()) {
    carry_[carry_size_++] = byte;
    if (carry_size_ < group_bytes) continue;
    line_cycle_.move_line(buffer, group_chars);
    append_base64(buffer, {carry_, group_bytes});
    carry_size_ = 0;
  }
}

void B64BodyEncoder::complete(i18n::StringBuffer<char>& buffer) {
  if (carry_size_ == 0) return;
  line_cycle_.move_line(buffer, group_chars);
  append_base64(buffer, {carry_, static_cast<size_t>(carry_size_)});
  carry_size_ = 0;
}

i18n_mime_encoding_t B64BodyEncoder::get_encoding_type() const { return I18N_MIME_B64; }

}  // namespace i18n_mime
