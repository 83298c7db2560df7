// How quoted-printable writes bytes: as they are, or as escapes of three characters. The table has
// an entry for each byte value, 1 where the byte must be escaped.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace i18n_mime {

constexpr int literal_size = 1;
constexpr int escape_size = 3;

inline bool is_escaped(const char* table, unsigned char byte) { return table[byte] == 1; }

// How many bytes of text must be escaped.
inline size_t count_escapes(const char* table, std::string_view text) {
  size_t count = 0;
  for (const char byte : text) count += is_escaped(table, static_cast<unsigned char>(byte));
  return count;
}

// Of four bytes, so that a form is written by one store.
using Form = std::array<char, 4>;
using Forms = std::array<Form, 256>;
extern const std::array<Forms, 2> forms;  // literals and escapes

// Writes the form of a byte and returns its end. The rest of the Form goes there, too, so there must
// be room for form_slack beyond the end. There is no branch: escapes come too irregularly to be
// predicted.
constexpr int form_slack = sizeof(Form) - literal_size;
inline char* put_form(char* out, bool escape, unsigned char byte) {
  std::memcpy(out, forms[escape][byte].data(), sizeof(Form));
  return out + (escape ? escape_size : literal_size);
}

}  // namespace i18n_mime
