// i18n_mail_structured(), i18n_mail_date(), i18n_mail_message_id(): fields whose values have a
// syntax.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>

#include <unistd.h>

#include "mail/call.h"
#include "mail/domain.h"
#include "mail/lines.h"
#include "mail/names.h"
#include "mail/text.h"

namespace mail {

namespace {

void check_field_name(const char* name) {
  check_name(view(name), longest_field_name, is_of_field_name);
}

std::string make_structured(const char* name, std::string_view value) {
  check_field_name(name);
  const size_t forbidden = find_forbidden_in_field(value);
  if (forbidden != value.npos) fail(I18N_MAIL_FORBIDDEN_CHARACTER, forbidden);
  const auto odd = std::ranges::find_if_not(value, is_printable);
  if (odd != value.end()) fail(I18N_MAIL_BAD_VALUE, static_cast<size_t>(odd - value.begin()));
  if (value.empty() || value.front() == ' ') fail(I18N_MAIL_BAD_VALUE);
  if (value.back() == ' ') fail(I18N_MAIL_BAD_VALUE, value.size() - 1);

  Field field(name);
  for (size_t begin = 0; begin < value.size();) {
    // A word has the blanks in front of it, but the first, which can become a fold.
    const size_t word = value.find_first_not_of(' ', begin);
    const size_t end = std::min(value.find(' ', word), value.size());
    field.separate(end - begin);
    const size_t room = longest_line - field.columns();
    if (end - begin > room) fail(I18N_MAIL_BAD_VALUE, begin + room);
    field.text() += value.substr(begin, end - begin);
    begin = end + 1;
  }
  return std::move(field.text());
}

std::string make_date(const char* name, int64_t seconds, int offset_minutes) {
  check_field_name(name);
  constexpr int64_t seconds_a_day = 86400, most_days = 4000000;
  constexpr int longest_offset = 1439;
  if (offset_minutes < -longest_offset || offset_minutes > longest_offset ||
      seconds < -most_days * seconds_a_day || seconds > most_days * seconds_a_day) {
    fail(I18N_MAIL_BAD_VALUE);
  }
  const std::chrono::sys_seconds time{std::chrono::seconds(seconds + int64_t{60} * offset_minutes)};
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  const int year = static_cast<int>(date.year());
  if (year < 1900 || year > 9999) fail(I18N_MAIL_BAD_VALUE);

  constexpr const char* weekdays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  constexpr const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                    "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const int zone = std::abs(offset_minutes);
  std::array<char, 64> value;
  std::snprintf(value.data(), value.size(), "%s, %02u %s %d %02d:%02d:%02d %c%02d%02d",
                weekdays[std::chrono::weekday(day).c_encoding()], static_cast<unsigned>(date.day()),
                months[static_cast<unsigned>(date.month()) - 1], year,
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()), offset_minutes < 0 ? '-' : '+',
                zone / 60, zone % 60);
  return make_structured(name, value.data());
}

std::string make_message_id(std::string_view domain) {
  constexpr size_t longest_domain = 252;  // of an address
  const std::string ascii = to_ascii_domain(domain, longest_domain, 0);
  std::array<unsigned char, 16> random;
  if (getentropy(random.data(), random.size()) != 0) throw std::bad_alloc();
  std::string id;
  for (const unsigned char byte : random) {
    constexpr char digits[] = "0123456789abcdef";
    id.append({digits[byte >> 4], digits[byte & 15]});
  }
  return make_structured("Message-ID", "<" + id + "@" + ascii + ">");
}

}  // namespace

}  // namespace mail

char* i18n_mail_structured(const char* name, const char* value, i18n_mail_error_t* error) {
  return mail::call(error, [&] { return mail::make_structured(name, mail::view(value)); });
}

char* i18n_mail_date(const char* name, int64_t seconds, int offset_minutes,
                     i18n_mail_error_t* error) {
  return mail::call(error, [&] { return mail::make_date(name, seconds, offset_minutes); });
}

char* i18n_mail_message_id(const char* domain, i18n_mail_error_t* error) {
  return mail::call(error, [&] { return mail::make_message_id(mail::view(domain)); });
}
