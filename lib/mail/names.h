// Which characters the names of fields, parameters and media types have.
#pragma once

#include <cstring>
#include <string_view>

#include "mail/call.h"

namespace mail {

constexpr size_t longest_field_name = 64;
constexpr size_t longest_parameter_name = 40;
constexpr size_t longest_type_name = 127;

constexpr bool is_printable(char c) { return ' ' <= c && c <= '~'; }
constexpr bool is_visible(char c) { return is_printable(c) && c != ' '; }
constexpr bool is_alphanumeric(char c) {
  return ('0' <= c && c <= '9') || ('A' <= c && c <= 'Z') || ('a' <= c && c <= 'z');
}
constexpr bool is_one_of(char c, std::string_view set) { return set.find(c) != set.npos; }

constexpr bool is_of_field_name(char c) { return is_visible(c) && c != ':'; }
constexpr bool is_of_token(char c) { return is_visible(c) && !is_one_of(c, "()<>@,;:\\\"/[]?="); }
constexpr bool is_of_parameter_name(char c) { return is_of_token(c) && !is_one_of(c, "*'%"); }
constexpr bool is_of_atom(char c) {
  return is_alphanumeric(c) || is_one_of(c, "!#$%&'*+-/=?^_`{|}~");
}

// Fails unless the name has 1 to `longest` characters, all of the kind.
template <class IsOfKind>
void check_name(std::string_view name, size_t longest, IsOfKind is_of_kind) {
  for (size_t i = 0; i < name.size(); ++i) {
    if (i == longest || !is_of_kind(name[i])) fail(I18N_MAIL_BAD_NAME, i);
  }
  if (name.empty()) fail(I18N_MAIL_BAD_NAME);
}

inline std::string_view view(const char* string) { return string != nullptr ? string : ""; }

}  // namespace mail
