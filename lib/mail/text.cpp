#include "mail/text.h"

#include <vector>

#include "mail/call.h"
#include "mail/encodings.h"
#include "text/icu/converter_types.h"

namespace mail {

SourceCharset::SourceCharset(const char* charset) : name_(charset), is_utf8_(names_utf8(charset)) {
  if (is_utf8_) return;
  tables_ = text::find_charset(charset);
  const bool is_fit = tables_ != nullptr && text::has_no_states(tables_->type());
  if (!is_fit) get_converter();
}

UConverter* SourceCharset::get_converter() const {
  if (!converter_) converter_ = text::open_lossless(name_);
  if (!converter_) fail(I18N_MAIL_UNKNOWN_CHARSET);
  return converter_.get();
}

namespace {

// Where line ends and other forbidden characters begin, and some others with them.
constexpr EscapeTable line_end_marks = mark_bytes({"\0\n\v\f\r\x1C\x1D\x1E\xC2\xE2", 10});

template <class IsForbidden>
size_t find_line_end(std::string_view text, IsForbidden is_forbidden) {
  if (count_escapes(line_end_marks, text) == 0) return text.npos;
  for (size_t i = 0; i < text.size(); ++i) {
    if (is_forbidden(text[i])) return i;
    const bool is_lead = text[i] == '\xC2' || text[i] == '\xE2';
    if (!is_lead) continue;
    for (const std::string_view line_end : {"\u0085", "\u2028", "\u2029"}) {
      if (text.substr(i).starts_with(line_end)) return i;
    }
  }
  return text.npos;
}

}  // namespace

size_t find_forbidden_in_body(std::string_view text) { return text.find('\0'); }

size_t find_forbidden_in_field(std::string_view text) {
  return find_line_end(text, [](char c) {
    return c == '\0' || ('\n' <= c && c <= '\r') || ('\x1C' <= c && c <= '\x1E');
  });
}

size_t find_forbidden_in_list(std::string_view text) {
  return find_line_end(text, [](char c) {
    return c == '\0' || c == '\v' || c == '\f' || ('\x1C' <= c && c <= '\x1E');
  });
}

Text::Text(const SourceCharset& charset, const char* bytes, size_t length,
           FindForbidden find_forbidden)
    : charset_(charset), bytes_(bytes, length) {
  const text::Table* const table =
      charset.tables() != nullptr ? charset.tables()->get_table(length) : nullptr;
  if (charset.is_utf8()) {
    utf8_ = bytes_;
    const size_t invalid = find_invalid(utf8_);
    if (invalid < utf8_.size()) fail(I18N_MAIL_INVALID_TEXT, invalid);
  } else if (table != nullptr && mail::to_utf8(*table, bytes_, converted_)) {
    utf8_ = converted_;
  } else {
    std::u16string units;
    const Outcome read = to_unicode(charset.get_converter(), bytes_, units);
    const size_t lone_surrogate = to_utf8(units, converted_);
    if (lone_surrogate != units.npos)
      fail(I18N_MAIL_INVALID_TEXT, find_unit_position(lone_surrogate));
    if (!read.complete) fail(I18N_MAIL_INVALID_TEXT, read.stopped);
    utf8_ = converted_;
  }
  const size_t index = find_forbidden(utf8_);
  if (index != utf8_.npos) fail(I18N_MAIL_FORBIDDEN_CHARACTER, find_position(index));
}

void Text::fail_lacking(MailCharset& charset) const {
  std::u16string units;
  to_utf16(utf8_, units);
  fail(I18N_MAIL_LACKING_CHARACTER, find_unit_position(charset.find_lacking(units)));
}

size_t Text::find_position(size_t index) const {
  std::u16string before;
  to_utf16(utf8_.substr(0, index), before);
  return find_unit_position(before.size());
}

size_t Text::find_unit_position(size_t unit) const {
  std::u16string units;
  if (!charset_.is_utf8()) {
    std::vector<size_t> offsets;
    to_unicode(charset_.get_converter(), bytes_, units, &offsets);
    return unit < offsets.size() ? offsets[unit] : bytes_.size();
  }
  std::string before;
  to_utf16(bytes_, units);
  to_utf8(std::u16string_view(units).substr(0, unit), before);
  return before.size();
}

}  // namespace mail
