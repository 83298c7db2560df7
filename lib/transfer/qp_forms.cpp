#include "transfer/qp_forms.h"

#include <array>
#include <cstring>

#include "transfer/vector.h"

namespace transfer {

namespace {

// Of four bytes, so that a form is written by one store.
using Form = std::array<char, 4>;
using Forms = std::array<Form, 256>;

constexpr std::array<Forms, 2> make_forms() {
  std::array<Forms, 2> forms{};
  for (unsigned byte = 0; byte < 256; ++byte) {
    forms[false][byte] = {static_cast<char>(byte)};
    put_escape(forms[true][byte].data(), static_cast<unsigned char>(byte));
  }
  return forms;
}
constexpr std::array<Forms, 2> forms = make_forms();

// There is no branch: escapes come too irregularly to be predicted.
char* put_form(char* out, const char* table, unsigned char byte) {
  const bool escaped = is_escaped(table, byte);
  std::memcpy(out, forms[escaped][byte].data(), sizeof(Form));
  return out + (escaped ? escape_size : 1);
}

// Whether the table says nothing of any of eight bytes: no mark, and nothing else.
bool are_literal(const char* table, const unsigned char* bytes) {
  int entries = 0;
  for (size_t i = 0; i < 8; ++i) entries |= table[bytes[i]];
  return entries == 0;
}

}  // namespace

size_t count_escapes(const char* table, const unsigned char* bytes, size_t size) {
  size_t count = 0;
  size_t done =
      size >= vector_stretch && has_avx2() ? count_escapes_avx2(table, bytes, size, count) : 0;
  for (; done != size; ++done) count += is_escaped(table, bytes[done]);
  return count;
}

char* put_forms(char* out, const char* table, const unsigned char* bytes, size_t size) {
  size_t done = size >= vector_stretch && has_avx2() ? put_forms_avx2(out, table, bytes, size) : 0;
  for (; size - done >= 8; done += 8) {
    if (are_literal(table, bytes + done)) {
      std::memcpy(out, bytes + done, 8);
      out += 8;
    } else {
      for (size_t i = done; i != done + 8; ++i) out = put_form(out, table, bytes[i]);
    }
  }
  for (; done != size; ++done) out = put_form(out, table, bytes[done]);
  return out;
}

}  // namespace transfer
