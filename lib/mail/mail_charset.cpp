#include "mail/mail_charset.h"

#include <algorithm>

#include "mail/call.h"
#include "mail/names.h"

namespace mail {

namespace {

// Two names can compare equal where ICU opens but one: it opens none that is too long, and takes
// what follows a comma for options.
bool is_plain_name(std::string_view name) {
  const auto is_plain = [](char c) { return is_alphanumeric(c) || is_one_of(c, "-_"); };
  return name.size() < UCNV_MAX_CONVERTER_NAME_LENGTH && std::ranges::all_of(name, is_plain);
}

constexpr std::string_view utf8_name = "UTF-8", iso_2022_jp_name = "ISO-2022-JP";

}  // namespace

bool names_utf8(const char* charset) {
  return charset == nullptr ||
         (is_plain_name(charset) && ucnv_compareNames(charset, utf8_name.data()) == 0);
}

MailCharset::MailCharset(const char* charset) : rules_(find_charset_rules(utf8_name)) {
  if (names_utf8(charset)) return;
  const bool is_known = is_plain_name(charset) || text::open_converter(charset) != nullptr;
  const char* const standard_name = is_known ? text::find_standard_name(charset) : nullptr;
  rules_ = find_charset_rules(view(standard_name));
  if (rules_ == nullptr) fail(I18N_MAIL_UNKNOWN_MAIL_CHARSET);
  if (rules_->name == utf8_name) return;
  converter_ = text::open_lossless(rules_->name.data());
  if (!converter_) fail(I18N_MAIL_UNKNOWN_MAIL_CHARSET);
}

bool MailCharset::is_iso_2022_jp() const { return rules_->name == iso_2022_jp_name; }

std::optional<std::string_view> MailCharset::convert(std::string_view text) {
  if (!converter_) return text;
  to_utf16(text, units_);
  if (find_lacking(units_) < units_.size()) return std::nullopt;
  return bytes_;
}

size_t MailCharset::find_lacking(std::u16string_view units) {
  const size_t barred = find_barred(*rules_, units);
  const Outcome written = from_unicode(converter_.get(), units.substr(0, barred), bytes_);
  const size_t barred_code = find_barred_code(*rules_, bytes_);
  if (barred_code == bytes_.size()) return written.complete ? barred : written.stopped;
  std::u16string before;
  to_unicode(converter_.get(), std::string_view(bytes_).substr(0, barred_code), before);
  return before.size();
}

}  // namespace mail
