// The charset that a mail is written in.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "mail/unicode.h"

namespace mail {

// Whether a name stands for plain UTF-8, which needs no converter.
bool names_utf8(const char* charset);

class MailCharset {
 public:
  // Fails when mail cannot be written in it. Null is UTF-8.
  explicit MailCharset(const char* charset);

  std::string_view name() const { return name_; }
  bool is_utf8() const { return converter_.isNull(); }

  // The text in the charset, complete by itself: it begins and ends in the initial state. Null when
  // the charset lacks a character of it. What comes back may lie in the text, or is valid until the
  // next call.
  std::optional<std::string_view> convert(std::string_view text);

  // The index of the first unit that the charset lacks, or would give back as another.
  size_t find_lacking(std::u16string_view units);

 private:
  bool is_fit_for_mail();

  std::string_view name_ = "UTF-8";
  icu::LocalUConverterPointer converter_;  // null for UTF-8
  std::u16string units_, read_back_;
  std::string bytes_;
};

}  // namespace mail
