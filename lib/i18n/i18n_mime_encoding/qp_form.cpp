#include "i18n_mime_encoding/qp_form.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace i18n_mime {

namespace {

// Of four bytes, so that a form is written by one store.
using Form = std::array<char, 4>;

struct Forms {
  std::array<std::array<Form, 256>, 2> bytes;  // by "is escaped" and by value
};

constexpr Forms make_forms() {
  constexpr char digits[] = "0123456789ABCDEF";
  Forms forms{};
  for (unsigned value = 0; value < 256; ++value) {
    forms.bytes[false][value] = {static_cast<char>(value)};
    forms.bytes[true][value] = {'=', digits[value >> 4], digits[value & 15]};
  }
  return forms;
}

constexpr Forms forms = make_forms();

// Without branches: escapes come too irregularly to be predicted.
inline char* put_form(char* out, const char* table, unsigned char byte) {
  const bool escaped = is_escaped(table, byte);
  std::memcpy(out, forms.bytes[escaped][byte].data(), sizeof(Form));
  return out + (escaped ? escape_size : literal_size);
}

constexpr std::ptrdiff_t stretch = 16;

// How many bytes from the beginning of a stretch are literals, in steps of four. May take entries
// of a table other than 0 and 1 for marks: bytes that are not counted are looked at one by one.
inline std::ptrdiff_t count_literals(const char* table, const unsigned char* bytes) {
  std::ptrdiff_t count = 0;
  while (count < stretch && (table[bytes[count]] | table[bytes[count + 1]] |
                             table[bytes[count + 2]] | table[bytes[count + 3]]) == 0) {
    count += 4;
  }
  return count;
}

}  // namespace

char* put_escape(char* out, unsigned char byte) {
  std::memcpy(out, forms.bytes[true][byte].data(), sizeof(Form));
  return out + escape_size;
}

// Literals are copied by stretches. Bytes from the first escape on go form by form for a while
// before the next stretch is looked at: looking again after each escape costs more than it saves in
// text that is mostly escapes.
char* put_forms(char* out, const char* limit, const char* table, const unsigned char*& position,
                const unsigned char* end) {
  constexpr std::ptrdiff_t forms_in_a_row = 8;
  const unsigned char* next = position;
  while (next != end) {
    if (end - next >= stretch) {
      const std::ptrdiff_t literals = std::min(count_literals(table, next), limit - out);
      std::memcpy(out, next, stretch);
      out += literals;
      next += literals;
      if (literals == stretch) continue;
    }
    const unsigned char* const row_end = next + std::min(forms_in_a_row, end - next);
    while (next != row_end) {
      char* const form_end = put_form(out, table, *next);
      if (form_end > limit) {
        position = next;
        return out;
      }
      out = form_end;
      ++next;
    }
  }
  position = next;
  return out;
}

}  // namespace i18n_mime
