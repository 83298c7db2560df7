#include "mail/charset.h"

#include <algorithm>

#include "mail/call.h"
#include "mail/names.h"

namespace mail {

namespace {

const char* find_standard_name(const char* charset) {
  for (const char* standard : {"MIME", "IANA"}) {
    UErrorCode status = U_ZERO_ERROR;
    const char* name = ucnv_getStandardName(charset, standard, &status);
    check_memory(status);
    if (name != nullptr) return name;
  }
  return nullptr;
}

}  // namespace

bool names_utf8(const char* charset) {
  if (charset == nullptr) return true;
  // Two names can compare equal where ICU opens but one: it opens none that is too long.
  const std::string_view name = charset;
  const auto is_plain = [](char c) { return is_alphanumeric(c) || is_one_of(c, "-_"); };
  return name.size() < UCNV_MAX_CONVERTER_NAME_LENGTH && std::ranges::all_of(name, is_plain) &&
         ucnv_compareNames(charset, "UTF-8") == 0;
}

MailCharset::MailCharset(const char* charset) {
  if (names_utf8(charset)) return;
  converter_ = open_converter(charset);
  const char* name = converter_.isNull() ? nullptr : find_standard_name(charset);
  if (name == nullptr || !is_fit_for_mail()) fail(I18N_MAIL_UNKNOWN_MAIL_CHARSET);
  name_ = name;
}

// What mail programs take for ASCII must be ASCII: line ends, and what words are made of.
bool MailCharset::is_fit_for_mail() {
  const UConverterType type = ucnv_getType(converter_.getAlias());
  if (type == UCNV_SCSU || type == UCNV_CESU8) return false;
  std::string ascii = "\t\r\n";
  for (char c = ' '; c <= '~'; ++c) ascii += c;
  return convert(ascii) == ascii;
}

std::optional<std::string_view> MailCharset::convert(std::string_view text) {
  if (converter_.isNull()) return text;
  to_utf16(text, units_);
  if (find_lacking(units_) < units_.size()) return std::nullopt;
  return bytes_;
}

// ICU writes some characters for private use in one direction only, whatever it is told.
size_t MailCharset::find_lacking(std::u16string_view units) {
  const Outcome written = from_unicode(converter_.getAlias(), units, bytes_);
  if (!written.complete) return written.stopped;
  to_unicode(converter_.getAlias(), bytes_, read_back_);
  const auto [unit, other] =
      std::mismatch(units.begin(), units.end(), read_back_.begin(), read_back_.end());
  return static_cast<size_t>(unit - units.begin());
}

}  // namespace mail
