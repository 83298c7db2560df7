// How quoted-printable writes bytes: as they are, or as escapes of three characters. The table has
// an entry for each byte value, 1 where the byte must be escaped.
#pragma once

#include <cstddef>
#include <string_view>

namespace i18n_mime {

constexpr int literal_size = 1;
constexpr int escape_size = 3;

inline bool is_escaped(const char* table, unsigned char byte) { return table[byte] == 1; }

inline int get_form_size(const char* table, unsigned char byte) {
  return is_escaped(table, byte) ? escape_size : literal_size;
}

// How many bytes of text must be escaped.
inline size_t count_escapes(const char* table, std::string_view text) {
  size_t count = 0;
  for (const char byte : text) count += is_escaped(table, static_cast<unsigned char>(byte));
  return count;
}

// What the functions below may write beyond the end that they return.
constexpr int forms_slack = 16;

// Writes an escape and returns its end.
char* put_escape(char* out, unsigned char byte);

// Writes the forms of the bytes from position on, as many as end at or before limit, and moves
// position past them. Returns the end of the forms.
char* put_forms(char* out, const char* limit, const char* table, const unsigned char*& position,
                const unsigned char* end);

}  // namespace i18n_mime
