// What the encoders write for a few bytes: those of one character or group.
#pragma once

#include <string_view>

#include "core/string_buffer.h"
#include "transfer/base64.h"
#include "transfer/qp_forms.h"

namespace i18n_mime {

constexpr int group_bytes = transfer::group_bytes;
constexpr int group_chars = transfer::group_chars;

inline const unsigned char* to_bytes(const char* text) {
  return reinterpret_cast<const unsigned char*>(text);
}

// Base64, with padding at the end of the bytes.
inline void append_base64(i18n::StringBuffer<char>& buffer, std::string_view bytes) {
  constexpr size_t piece_size = 16 * transfer::group_bytes;  // most words have no more
  char chars[transfer::base64_size(piece_size)];
  for (size_t at = 0; at < bytes.size(); at += piece_size) {
    const std::string_view piece = bytes.substr(at, piece_size);
    const char* end = transfer::put_base64(chars, to_bytes(piece.data()), piece.size());
    buffer.add_bytes(chars, static_cast<int>(end - chars));
  }
}

// One byte of quoted-printable: as it is or, where the table says so, as an escape.
constexpr int literal_size = 1;
constexpr int escape_size = transfer::escape_size;

inline int get_form_size(const char* table, char byte) {
  return transfer::is_escaped(table, static_cast<unsigned char>(byte)) ? escape_size : literal_size;
}

inline void append_escape(i18n::StringBuffer<char>& buffer, char byte) {
  char escape[escape_size];
  transfer::put_escape(escape, static_cast<unsigned char>(byte));
  buffer.add_bytes(escape, escape_size);
}

inline void append_form(i18n::StringBuffer<char>& buffer, const char* table, char byte) {
  if (get_form_size(table, byte) == literal_size) {
    buffer.add_char(byte);
  } else {
    append_escape(buffer, byte);
  }
}

}  // namespace i18n_mime
