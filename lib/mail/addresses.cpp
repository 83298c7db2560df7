// i18n_mail_addresses(), i18n_mail_addresses_utf8(): a field of addresses.
#include <algorithm>

#include "mail/address.h"
#include "mail/call.h"
#include "mail/lines.h"
#include "mail/mail_charset.h"
#include "mail/names.h"
#include "mail/text.h"
#include "mail/words.h"

namespace mail {

namespace {

// Words of atoms between single blanks, or a quoted string; empty when the name must be encoded.
std::string to_plain_phrase(std::string_view name) {
  if (!std::ranges::all_of(name, is_printable) || name.find("=?") != name.npos ||
      name.front() == ' ' || name.back() == ' ') {
    return {};
  }
  const bool is_atoms =
      std::ranges::all_of(name, [](char c) { return is_of_atom(c) || c == ' '; }) &&
      name.find("  ") == name.npos;
  if (is_atoms) return std::string(name);
  std::string quoted = "\"";
  for (const char c : name) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted += '"';
}

// The name's words. `tail` is how many columns follow them.
void append_words(Field& field, MailCharset& charset, std::string_view name, size_t tail) {
  WordMaker words(charset, phrase_escapes, name);
  const size_t as_q = words.measure(0, name.size(), WordKind::kQ);
  const size_t as_b = words.measure(0, name.size(), WordKind::kB);
  const bool is_q = as_q <= as_b && !charset.is_iso_2022_jp();
  const WordKind kind = is_q ? WordKind::kQ : WordKind::kB;
  const size_t whole = is_q ? as_q : as_b;
  field.separate(whole > longest_word ? whole : whole + tail);
  for (size_t begin = 0; begin < name.size();) {
    if (begin > 0) field.fold();
    Word word = words.cut(begin, name.size(), std::min(field.room(), longest_word), kind);
    if (word.end == begin) word = words.cut(begin, name.size(), longest_word, kind);
    words.append(field.text(), begin, word);
    begin = word.end;
  }
}

void append_item(Field& field, MailCharset& charset, std::string_view name,
                 const std::string& address, bool is_last) {
  const std::string comma = is_last ? "" : ",";
  std::string end = address + comma;
  if (!name.empty()) {
    end = "<" + address + ">" + comma;
    const size_t tail = 1 + end.size();
    const std::string phrase = to_plain_phrase(name);
    const size_t line_room =
        field.is_first_line() && field.is_fresh() ? field.room() : longest_word;
    if (phrase.empty() || phrase.size() > line_room) {
      append_words(field, charset, name, tail);
    } else {
      field.separate(phrase.size() + tail);
      field.text() += phrase;
    }
  }
  field.separate(end.size());
  field.text() += end;
}

std::string make_addresses(const char* name, const i18n_mail_address_t* items, size_t count,
                           const char* charset, const char* mail_charset, LocalParts local_parts) {
  check_name(view(name), longest_field_name, is_of_field_name);
  if (count == 0) fail(I18N_MAIL_BAD_ADDRESS);
  const SourceCharset source(charset);
  MailCharset target(mail_charset);
  Field field(name);
  for (size_t i = 0; i < count; ++i) {
    try {
      const Text text(source, items[i].name, items[i].length, find_forbidden_in_field);
      if (!target.convert(text.utf8())) text.fail_lacking(target);
      append_item(field, target, text.utf8(), to_mail_address(view(items[i].address), local_parts),
                  i + 1 == count);
    } catch (Failure& failure) {
      failure.item = i;
      throw;
    }
  }
  return std::move(field.text());
}

}  // namespace

}  // namespace mail

char* i18n_mail_addresses(const char* name, const i18n_mail_address_t* items, size_t count,
                          const char* charset, const char* mail_charset, i18n_mail_error_t* error) {
  return mail::call(error, [&] {
    return mail::make_addresses(name, items, count, charset, mail_charset,
                                mail::LocalParts::kAscii);
  });
}

char* i18n_mail_addresses_utf8(const char* name, const i18n_mail_address_t* items, size_t count,
                               const char* charset, const char* mail_charset,
                               i18n_mail_error_t* error) {
  return mail::call(error, [&] {
    return mail::make_addresses(name, items, count, charset, mail_charset, mail::LocalParts::kUtf8);
  });
}
