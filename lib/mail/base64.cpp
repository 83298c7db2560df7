// i18n_mail_base64(): the lines of a part that is written in pieces.
#include <limits>

#include <qorvii18n/i18n_mail.h>

#include "mail/part.h"

size_t i18n_mail_base64_size(size_t length) {
  constexpr size_t most = std::numeric_limits<size_t>::max();
  constexpr size_t line_bytes = mail::line_columns / transfer::group_chars * transfer::group_bytes;
  constexpr size_t longest = most / (mail::line_columns + mail::line_end.size()) * line_bytes;
  return length <= longest ? mail::measure_base64_lines(length) : most;
}

size_t i18n_mail_base64(char* out, const void* data, size_t length) {
  mail::put_base64_lines(out, {static_cast<const char*>(data), length});
  return mail::measure_base64_lines(length);
}
