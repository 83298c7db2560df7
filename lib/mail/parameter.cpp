// i18n_mail_parameter(): a parameter of a field's value.
#include "mail/parameter.h"

#include <algorithm>

#include "mail/call.h"
#include "mail/lines.h"
#include "mail/names.h"
#include "mail/text.h"

namespace mail {

namespace {

constexpr std::string_view separator = ";\r\n ";
// After the blank of a fold, and in front of the ';' of what can follow.
constexpr size_t parameter_columns = line_columns - 2;

bool is_plain_value(std::string_view value) {
  return std::ranges::all_of(value, is_printable) && value.find_first_of("\"\\") == value.npos &&
         value.find("=?") == value.npos && !value.starts_with(' ') && !value.ends_with(' ');
}

std::string percent_encode(std::string_view bytes) {
  constexpr char digits[] = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : bytes) {
    if (is_alphanumeric(c) || is_one_of(c, "-._")) {
      encoded += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      encoded.append({'%', digits[byte >> 4], digits[byte & 15]});
    }
  }
  return encoded;
}

std::string make_extended(std::string_view name, std::string_view value) {
  constexpr std::string_view charset = "UTF-8''";
  const std::string encoded = percent_encode(value);
  std::string line = std::string(name).append("*=").append(charset);
  if (line.size() + encoded.size() <= parameter_columns) return line + encoded;
  std::string result;
  size_t section = 0;
  const auto begin_line = [&] {
    return std::string(name) + '*' + std::to_string(section++) + "*=";
  };
  line = begin_line().append(charset);
  for (size_t begin = 0; begin < value.size();) {
    const size_t end = next_character(value, begin);
    const std::string character = percent_encode(value.substr(begin, end - begin));
    if (line.size() + character.size() > parameter_columns) {
      result.append(line).append(separator);
      line = begin_line();
    }
    line += character;
    begin = end;
  }
  return result + line;
}

std::string make_parameter(const char* name, const char* bytes, size_t length,
                           const char* charset) {
  check_name(view(name), longest_parameter_name, is_of_parameter_name);
  const SourceCharset source(charset);
  return write_parameter(name, Text(source, bytes, length, find_forbidden_in_field).utf8());
}

}  // namespace

std::string write_parameter(std::string_view name, std::string_view value) {
  // Some readers look for the marks of an extended value in a token, but not within quotes.
  const bool is_token = !value.empty() && std::ranges::all_of(value, is_of_parameter_name);
  const std::string quote = is_token ? "" : "\"";
  std::string plain(name);
  plain.append("=").append(quote).append(value).append(quote);
  const bool fits = plain.size() <= parameter_columns && is_plain_value(value);
  return std::string(separator) + (fits ? plain : make_extended(name, value));
}

}  // namespace mail

char* i18n_mail_parameter(const char* name, const char* value, size_t length, const char* charset,
                          i18n_mail_error_t* error) {
  return mail::call(error, [&] { return mail::make_parameter(name, value, length, charset); });
}
