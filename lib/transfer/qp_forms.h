// How quoted-printable writes bytes: as they are, or as escapes of three characters. What a byte is
// written as is its form. A table says which: it has an entry for each byte value, 1 where the byte
// must be escaped.
#pragma once

#include <cstddef>

namespace transfer {

constexpr size_t escape_size = 3;

inline bool is_escaped(const char* table, unsigned char byte) { return table[byte] == 1; }

// The escape of a byte. Returns the end.
constexpr char* put_escape(char* out, unsigned char byte) {
  constexpr char digits[] = "0123456789ABCDEF";
  *out++ = '=';
  *out++ = digits[byte >> 4];
  *out++ = digits[byte & 15];
  return out;
}

size_t count_escapes(const char* table, const unsigned char* bytes, size_t size);

// Writes the forms of the bytes one after the other, without lines. Returns the end. What lies up
// to form_slack beyond the end is overwritten, too: there must be room for that.
constexpr size_t form_slack = 32;
char* put_forms(char* out, const char* table, const unsigned char* bytes, size_t size);

// Where forms can be cut: at size, or up to two characters before it, when size is inside an
// escape. The table must escape '=', so that it begins every escape and nothing else.
inline size_t cut_forms(const char* forms, size_t size) {
  if (size > 0 && forms[size - 1] == '=') return size - 1;
  if (size > 1 && forms[size - 2] == '=') return size - 2;
  return size;
}

}  // namespace transfer
