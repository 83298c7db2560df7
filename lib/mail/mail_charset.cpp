#include "mail/mail_charset.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>

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

// What a name was found to stand for. Names come from outside, so that only so many are kept, of
// those that are good. They are never given up.
struct Known {
  std::string name;
  const CharsetRules* rules;
  const text::Charset* tables;
};
constexpr size_t most_known = 1024, most_looks = 8;
constinit std::atomic<const Known*> known_charsets[most_known];

// Calls take(place) with the places in which the name may be until it returns true.
template <class Take>
void for_each_place(std::string_view name, Take take) {
  const size_t hash = std::hash<std::string_view>{}(name);
  for (size_t i = 0; i < most_looks; ++i) {
    if (take(known_charsets[(hash + i) % most_known])) return;
  }
}

const Known* find_known(std::string_view name) {
  const Known* found = nullptr;
  for_each_place(name, [&](const std::atomic<const Known*>& place) {
    const Known* const known = place.load(std::memory_order_acquire);
    if (known != nullptr && known->name == name) found = known;
    return known == nullptr || found != nullptr;
  });
  return found;
}

void remember(std::string_view name, const CharsetRules* rules) {
  const bool is_iso_2022_jp = rules->name == iso_2022_jp_name;
  const char* const with_tables = is_iso_2022_jp ? "EUC-JP" : rules->name.data();
  const text::Charset* const tables = text::find_charset(with_tables);
  if (tables == nullptr) return;
  std::unique_ptr<const Known> known;
  try {
    known = std::make_unique<const Known>(Known{std::string(name), rules, tables});
  } catch (const std::bad_alloc&) {
    return;  // The call can do without.
  }
  for_each_place(name, [&](std::atomic<const Known*>& place) {
    const Known* none = nullptr;
    const bool is_kept =
        place.compare_exchange_strong(none, known.get(), std::memory_order_release);
    if (is_kept) static_cast<void>(known.release());
    return is_kept;
  });
}

}  // namespace

bool names_utf8(const char* charset) {
  return charset == nullptr || charset == utf8_name ||
         (is_plain_name(charset) && ucnv_compareNames(charset, utf8_name.data()) == 0);
}

MailCharset::MailCharset(const char* charset) : rules_(find_charset_rules(utf8_name)) {
  if (charset == nullptr || charset == utf8_name) return;
  if (const Known* const known = find_known(charset)) {
    rules_ = known->rules;
    tables_ = known->tables;
    is_utf8_ = false;
    return;
  }
  if (names_utf8(charset)) return;
  const bool is_known = is_plain_name(charset) || text::open_converter(charset) != nullptr;
  const char* const standard_name = is_known ? text::find_standard_name(charset) : nullptr;
  rules_ = find_charset_rules(view(standard_name));
  if (rules_ == nullptr) fail(I18N_MAIL_UNKNOWN_MAIL_CHARSET);
  is_utf8_ = rules_->name == utf8_name;
  if (is_utf8_) return;
  get_converter();
  remember(charset, rules_);
}

bool MailCharset::is_iso_2022_jp() const { return rules_->name == iso_2022_jp_name; }

UConverter* MailCharset::get_converter() {
  if (!converter_) converter_ = text::open_lossless(rules_->name.data());
  if (!converter_) fail(I18N_MAIL_UNKNOWN_MAIL_CHARSET);
  return converter_.get();
}

std::optional<std::string_view> MailCharset::convert(std::string_view text) {
  text_ = text;
  if (is_utf8_) return text;
  is_by_tables_ = tables_ != nullptr && table_text_.convert(*rules_, *tables_, text);
  if (is_by_tables_) return table_text_.get_all();
  return convert_exactly(text) ? std::optional<std::string_view>(bytes_) : std::nullopt;
}

std::string_view MailCharset::convert_part(size_t begin, size_t end) {
  const std::string_view part = text_.substr(begin, end - begin);
  if (is_utf8_) return part;
  if (is_by_tables_) return table_text_.get(begin, end);
  convert_exactly(part);
  return bytes_;
}

size_t MailCharset::find_index(size_t begin, size_t bytes) {
  if (!is_utf8_) return table_text_.find_index(begin, bytes);
  size_t index = std::min(begin + bytes, text_.size());
  while (index < text_.size() && is_inside_character(text_[index])) --index;
  return index;
}

bool MailCharset::convert_exactly(std::string_view text) {
  to_utf16(text, units_);
  return find_lacking(units_) == units_.size();
}

size_t MailCharset::find_lacking(std::u16string_view units) {
  const size_t barred = find_barred(*rules_, units);
  const Outcome written = from_unicode(get_converter(), units.substr(0, barred), bytes_);
  const size_t barred_code = find_barred_code(*rules_, bytes_);
  if (barred_code == bytes_.size()) return written.complete ? barred : written.stopped;
  std::u16string before;
  to_unicode(get_converter(), std::string_view(bytes_).substr(0, barred_code), before);
  return before.size();
}

}  // namespace mail
