// A text of the caller's, read from its charset, and where each character of it came from.
#pragma once

#include <string>
#include <string_view>

#include "mail/icu.h"
#include "mail/mail_charset.h"
#include "text/icu/converter.h"

namespace mail {

class SourceCharset {
 public:
  // Fails when ICU does not know it. Null is UTF-8.
  explicit SourceCharset(const char* charset);
  bool is_utf8() const { return is_utf8_; }
  // Null when there can be no tables.
  const text::Charset* tables() const { return tables_; }
  UConverter* get_converter() const;

 private:
  const char* name_;
  bool is_utf8_;
  const text::Charset* tables_ = nullptr;
  mutable text::ConverterPtr converter_;  // opened when tables are not enough
};

// Each gives the index of the first character that must not stand there; npos when there is none.
// All line ends are forbidden in a field, those of other systems and of Unicode, too: programs that
// copy a field after they decoded it stumble over them.
using FindForbidden = size_t (*)(std::string_view text);
size_t find_forbidden_in_body(std::string_view text);
size_t find_forbidden_in_field(std::string_view text);
size_t find_forbidden_in_list(std::string_view text);  // CR and LF are blanks there

class Text {
 public:
  // Borrows all. Fails when they are not of the charset, or have a character that is
  // forbidden.
  Text(const SourceCharset& charset, const char* bytes, size_t length,
       FindForbidden find_forbidden);

  std::string_view utf8() const { return utf8_; }

  // Fails, after a conversion of the text to that charset did.
  [[noreturn]] void fail_lacking(MailCharset& charset) const;

  // Where in the caller's bytes the character begins that begins at an index of utf8().
  size_t find_position(size_t index) const;

 private:
  size_t find_unit_position(size_t unit) const;

  const SourceCharset& charset_;
  std::string_view bytes_;
  std::string_view utf8_;
  std::string converted_;
};

}  // namespace mail
