// How quoted-printable writes a byte.
#pragma once

#include <array>
#include <cstring>

namespace i18n_mime {

constexpr int literal_size = 1;
constexpr int escape_size = 3;
// Room that put_form() writes to, whatever the form's own size.
constexpr int max_form_size = 4;

struct QPForms {
  // By table entry (1: escaped) and byte value.
  std::array<std::array<std::array<char, max_form_size>, 256>, 2> bytes;
};

constexpr QPForms make_qp_forms() {
  constexpr char digits[] = "0123456789ABCDEF";
  QPForms forms{};
  for (unsigned value = 0; value < 256; ++value) {
    forms.bytes[0][value] = {static_cast<char>(value)};
    forms.bytes[1][value] = {'=', digits[value >> 4], digits[value & 15]};
  }
  return forms;
}

inline constexpr QPForms qp_forms = make_qp_forms();

// Writes max_form_size bytes at out, of which the form takes the first one or three; returns the
// form's end. Without branches, since escapes come too irregularly to be predicted.
inline char* put_form(char* out, unsigned char byte, bool escaped) {
  std::memcpy(out, qp_forms.bytes[escaped][byte].data(), max_form_size);
  return out + (escaped ? escape_size : literal_size);
}

}  // namespace i18n_mime
