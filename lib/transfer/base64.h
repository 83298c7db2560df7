// Base64 text of bytes.
#pragma once

#include <cstddef>

namespace transfer {

constexpr size_t group_bytes = 3;
constexpr size_t group_chars = 4;

constexpr size_t base64_size(size_t bytes) {
  return (bytes + group_bytes - 1) / group_bytes * group_chars;
}

// Writes base64_size(size) characters, the padding included, without line breaks. Returns the end.
char* put_base64(char* out, const unsigned char* bytes, size_t size);

// The same in lines of line_chars characters, a multiple of four from 64 to 96, with CR LF between
// two of them and none after the last, which can be shorter.
constexpr size_t line_break_size = 2;
inline char* put_line_break(char* out) {
  *out++ = '\r';
  *out++ = '\n';
  return out;
}
constexpr size_t base64_lines_size(size_t bytes, size_t line_chars) {
  const size_t chars = base64_size(bytes);
  return chars == 0 ? 0 : chars + (chars - 1) / line_chars * line_break_size;
}
char* put_base64_lines(char* out, const unsigned char* bytes, size_t size, size_t line_chars);

}  // namespace transfer
