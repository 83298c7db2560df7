#include "i18n_mime_encoding/escape_marks.h"

#include "i18n_mime_encoding/qp_form.h"

namespace i18n_mime {

EscapeMarks::EscapeMarks(const char* table, const unsigned char* bytes, const unsigned char* end)
    : begin(bytes), marks{} {
  const std::ptrdiff_t done = mark_escapes_vector(marks, table, bytes, end - bytes);
  mark_escapes_plain(marks + done / stretch, table, bytes + done, end - bytes - done);
}

void mark_escapes_plain(std::uint32_t* marks, const char* table, const unsigned char* bytes,
                        std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const auto mark = static_cast<std::uint32_t>(is_escaped(table, bytes[i]));
    marks[i / EscapeMarks::stretch] |= mark << (i % EscapeMarks::stretch);
  }
}

}  // namespace i18n_mime
