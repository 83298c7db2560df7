// The fields that open a part.
#pragma once

#include <string>
#include <string_view>

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

inline void put_base64_lines(char* out, std::string_view bytes) {
  if (bytes.empty()) return;
  char* const end = transfer::put_base64_lines(out, to_unsigned(bytes), bytes.size(), line_columns);
  transfer::put_line_break(end);
}

inline void append_base64_lines(std::string& text, std::string_view bytes) {
  const size_t begin = text.size();
  text.resize(begin + measure_base64_lines(bytes.size()));
  put_base64_lines(text.data() + begin, bytes);
}

}  // namespace mail
