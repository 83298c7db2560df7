// The charset that a mail is written in.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "mail/charset_rules.h"
#include "mail/icu.h"
#include "mail/table_text.h"
#include "text/icu/converter.h"

namespace mail {

// Whether a name stands for plain UTF-8, which needs no converter.
bool names_utf8(const char* charset);

class MailCharset {
 public:
  // Fails when mail cannot be written in it. Null is UTF-8.
  explicit MailCharset(const char* charset);

  std::string_view name() const { return rules_->name; }
  bool is_utf8() const { return is_utf8_; }
  // Words in it are B where they can be and bodies 7bit or base64, as RFC 1468 wants it: readers of
  // old know no more.
  bool is_iso_2022_jp() const;

  // The text in the charset, complete by itself: it begins and ends in the initial state. Null when
  // the charset lacks a character of it. What comes back may lie in the text, or is valid until the
  // next call. Borrows the text.
  std::optional<std::string_view> convert(std::string_view text);

  // The same for a part of the text that was converted last.
  std::string_view convert_part(size_t begin, size_t end);

  // Whether parts are just that of the whole. Then: where the character begins that has the byte
  // which comes so many bytes after what stands for the text at an index.
  bool has_plain_parts() const { return is_utf8_ || (is_by_tables_ && !table_text_.has_states()); }
  size_t find_index(size_t begin, size_t bytes);

  // The index of the first unit that the charset lacks, or that some readers take for another; the
  // size when it has them all.
  size_t find_lacking(std::u16string_view units);

 private:
  UConverter* get_converter();
  bool convert_exactly(std::string_view text);

  const CharsetRules* rules_;
  bool is_utf8_ = true;
  const text::Charset* tables_ = nullptr;
  std::string_view text_;
  TableText table_text_;
  bool is_by_tables_ = false;
  text::ConverterPtr converter_;  // opened when tables are not enough
  std::u16string units_;
  std::string bytes_;
};

}  // namespace mail
