// The fields that open a part.
#pragma once

#include <string>
#include <string_view>

#include "mail/encodings.h"
#include "mail/lines.h"

namespace mail {

inline std::string make_part_head(std::string_view type, std::string_view encoding) {
  return std::string("Content-Type: ")
      .append(type)
      .append("\r\nContent-Transfer-Encoding: ")
      .append(encoding)
      .append("\r\n\r\n");
}

inline size_t measure_base64_lines(std::string_view bytes) {
  const size_t size = transfer::base64_lines_size(bytes.size(), line_columns);
  return size == 0 ? 0 : size + line_end.size();
}

// Appends the bytes in base64, in lines that all are ended.
inline void append_base64_lines(std::string& text, std::string_view bytes) {
  if (bytes.empty()) return;
  const size_t begin = text.size();
  text.resize(begin + measure_base64_lines(bytes));
  char* end = transfer::put_base64_lines(text.data() + begin, to_unsigned(bytes), bytes.size(),
                                         line_columns);
  line_end.copy(end, line_end.size());
}

}  // namespace mail
