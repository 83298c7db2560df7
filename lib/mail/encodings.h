// Bytes in quoted-printable and in base64, at the end of a string.
#pragma once

#include <array>
#include <string_view>

#include "mail/names.h"
#include "transfer/base64.h"
#include "transfer/qp_forms.h"

namespace mail {

using EscapeTable = std::array<char, 256>;

// Entries as the table of qp_forms.h has them: literal is what is_literal accepts of ASCII.
template <class IsLiteral>
constexpr EscapeTable make_escape_table(IsLiteral is_literal) {
  EscapeTable table{};
  for (size_t byte = 0; byte < table.size(); ++byte) {
    const bool literal = byte < 0x80 && is_literal(static_cast<char>(byte));
    table[byte] = literal ? 0 : 1;
  }
  return table;
}

// For count_escapes(), which counts any bytes.
constexpr EscapeTable mark_bytes(std::string_view bytes) {
  EscapeTable table{};
  for (const char byte : bytes) table[static_cast<unsigned char>(byte)] = 1;
  return table;
}

inline const unsigned char* to_unsigned(std::string_view bytes) {
  return reinterpret_cast<const unsigned char*>(bytes.data());
}

inline size_t count_escapes(const EscapeTable& table, std::string_view bytes) {
  return transfer::count_escapes(table.data(), to_unsigned(bytes), bytes.size());
}

inline size_t measure_forms(const EscapeTable& table, std::string_view bytes) {
  return bytes.size() + count_escapes(table, bytes) * (transfer::escape_size - 1);
}

inline void append_escape(std::string& text, char c) {
  char escape[transfer::escape_size];
  transfer::put_escape(escape, static_cast<unsigned char>(c));
  text.append(escape, sizeof escape);
}

// Appends the forms of the bytes.
inline void append_forms(std::string& text, const EscapeTable& table, std::string_view bytes) {
  const size_t begin = text.size();
  text.resize(begin + bytes.size() * transfer::escape_size + transfer::form_slack);
  const char* end =
      transfer::put_forms(text.data() + begin, table.data(), to_unsigned(bytes), bytes.size());
  text.resize(static_cast<size_t>(end - text.data()));
}

// Appends the bytes in base64, in one line.
inline void append_base64(std::string& text, std::string_view bytes) {
  const size_t begin = text.size();
  text.resize(begin + transfer::base64_size(bytes.size()));
  transfer::put_base64(text.data() + begin, to_unsigned(bytes), bytes.size());
}

}  // namespace mail
