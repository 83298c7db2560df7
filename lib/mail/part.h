// The fields that open a part.
#pragma once

#include <string>
#include <string_view>

#include "mail/call.h"
#include "mail/encodings.h"
#include "mail/lines.h"

namespace mail {

inline std::string make_part_head(std::string content_type, std::string_view encoding) {
  return content_type.append("\r\nContent-Transfer-Encoding: ").append(encoding).append("\r\n\r\n");
}

// Of so many bytes in base64, in lines that all are ended.
inline size_t measure_base64_lines(size_t bytes) {
  const size_t size = transfer::base64_lines_size(bytes, line_columns);
  return size == 0 ? 0 : size + line_end.size();
}

// Each writes something and returns its end.
inline char* put_base64_lines(char* out, std::string_view bytes) {
  if (bytes.empty()) return out;
  char* const end = transfer::put_base64_lines(out, to_unsigned(bytes), bytes.size(), line_columns);
  return transfer::put_line_break(end);
}
inline char* put(char* out, std::string_view text) {
  std::memcpy(out, text.data(), text.size());
  return out + text.size();
}

}  // namespace mail
