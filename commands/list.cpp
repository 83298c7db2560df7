#include "list.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include <qorvii18n/i18n_charset.h>
#include <qorvii18n/i18n_mail.h>
#include <qorvii18n/i18n_text.h>

namespace {

bool can_be_converted(const char* charset) {
  i18n_text_converter_t* const converter = i18n_text_open(charset, charset, nullptr);
  i18n_text_close(converter);
  return converter != nullptr;
}

// What stands in an encoded word with a letter that the charset has, if it has one; nothing when
// mail is not written in it.
std::string find_mail_name(const char* charset) {
  for (const std::string_view letter : {"\u00e9", "\u0436", "\u03b1", "\u05d0", "\u0627", "\u0e01",
                                        "\u65e5", "\uac00", "\u0105", "\u20ac"}) {
    i18n_mail_error_t error;
    const std::unique_ptr<char, decltype(&i18n_mail_free)> field(
        i18n_mail_header("X", letter.data(), letter.size(), nullptr, charset, &error),
        i18n_mail_free);
    if (error.status == I18N_MAIL_UNKNOWN_MAIL_CHARSET) return "";
    if (field == nullptr) continue;
    const std::string_view text = field.get();
    const size_t begin = text.find("=?") + 2;
    return std::string(text.substr(begin, text.find('?', begin) - begin));
  }
  return charset;
}

}  // namespace

std::string list_charsets() {
  std::vector<std::string> lines;
  for (i18n_charset_t** charset = i18n_charset_open_all(); *charset != nullptr; ++charset) {
    std::string line = i18n_charset_get_name(*charset);
    if (!can_be_converted(line.c_str())) continue;
    if (const std::string mail_name = find_mail_name(line.c_str()); !mail_name.empty()) {
      line.resize(std::max<size_t>(line.size() + 1, 32), ' ');
      line += "mail: " + mail_name;
    }
    lines.push_back(line + '\n');
  }
  std::ranges::sort(lines, [](const std::string& left, const std::string& right) {
    return strcasecmp(left.c_str(), right.c_str()) < 0;
  });
  lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
  std::string list;
  for (const std::string& line : lines) list += line;
  return list;
}
