// i18n_mail_text(): a part with a text.
#include <algorithm>

#include "mail/call.h"
#include "mail/charset.h"
#include "mail/names.h"
#include "mail/part.h"
#include "mail/text.h"

namespace mail {

namespace {

constexpr EscapeTable body_escapes =
    make_escape_table([](char c) { return is_printable(c) && c != '='; });

// What some take for the line of a mailbox file, or for the end of a mail, and what every boundary
// begins with: a text can have no line that ends its part.
constexpr std::string_view mailbox_mark = "From ";
constexpr char end_mark = '.';
constexpr std::string_view boundary_mark = "--";

bool begins_badly(std::string_view line) {
  return line.starts_with(end_mark) || line.starts_with(mailbox_mark) ||
         line.starts_with(boundary_mark);
}

// Calls take(line), which says whether to go on, with each line and without its end.
template <class Take>
void for_each_line(std::string_view text, Take take) {
  while (!text.empty()) {
    const size_t end = std::min(text.find(line_end), text.size());
    if (!take(text.substr(0, end))) return;
    text.remove_prefix(std::min(end + line_end.size(), text.size()));
  }
}

// With CR LF at the end of every line, whatever was there.
std::string end_lines(std::string_view text) {
  std::string lines;
  lines.reserve(text.size() + text.size() / 32 + line_end.size());
  size_t carriage_return = 0, line_feed = 0;
  for (size_t begin = 0; begin < text.size();) {
    // Each is looked for again only when it was passed, so that a text without one takes no longer.
    const auto update = [&](size_t& next, char c) {
      if (next < begin || begin == 0) next = std::min(text.find(c, begin), text.size());
    };
    update(carriage_return, line_end[0]);
    update(line_feed, line_end[1]);
    const size_t end = std::min(carriage_return, line_feed);
    lines.append(text, begin, end - begin).append(line_end);
    begin = end + (end + 1 == line_feed ? line_end.size() : 1);
  }
  return lines;
}

bool needs_no_encoding(std::string_view text) {
  bool plain = true;
  for_each_line(text, [&plain](std::string_view line) {
    const auto is_plain = [](char c) { return is_printable(c) || c == '\t'; };
    plain = line.size() <= line_columns && !begins_badly(line) && !line.ends_with(' ') &&
            !line.ends_with('\t') && std::ranges::all_of(line, is_plain);
    return plain;
  });
  return plain;
}

// The forms of a line, cut into lines of the mail.
void append_quoted_line(std::string& text, std::string_view forms) {
  for (;;) {
    size_t room = line_columns;
    if (begins_badly(forms)) {
      append_escape(text, forms.front());
      room -= transfer::escape_size;
      forms.remove_prefix(1);
    }
    if (forms.size() <= room) break;
    const size_t end = transfer::cut_forms(forms.data(), room - 1);
    text.append(forms, 0, end).append("=").append(line_end);
    forms.remove_prefix(end);
  }
  text.append(forms).append(line_end);
}

// Appends the text in quoted-printable, but gives up when that takes more than `most`.
bool append_quoted(std::string& text, std::string_view bytes, size_t most) {
  const size_t limit = text.size() + most;
  std::string forms;
  for_each_line(bytes, [&](std::string_view line) {
    const bool ends_in_blank = line.ends_with(' ');
    if (ends_in_blank) line.remove_suffix(1);
    forms.clear();
    append_forms(forms, body_escapes, line);
    if (ends_in_blank) append_escape(forms, ' ');
    append_quoted_line(text, forms);
    return text.size() <= limit;
  });
  return text.size() <= limit;
}

// What quoted-printable takes at least. Line ends are written as they are.
size_t measure_quoted(std::string_view bytes) {
  const auto lines = static_cast<size_t>(std::ranges::count(bytes, line_end.back()));
  return measure_forms(body_escapes, bytes) - lines * line_end.size() * (transfer::escape_size - 1);
}

std::string make_text_part(const char* subtype, const char* bytes, size_t length,
                           const char* charset, const char* mail_charset) {
  check_name(view(subtype), longest_type_name, is_of_token);
  const SourceCharset source(charset);
  MailCharset target(mail_charset);
  const Text text(source, bytes, length, find_forbidden_in_body);
  const std::string lines = end_lines(text.utf8());
  const auto body = target.convert(lines);
  if (!body) text.fail_lacking(target);

  const bool ascii = is_ascii(lines);
  std::string type = std::string("text/") + subtype + ';';
  const std::string parameter = std::string("charset=").append(ascii ? "US-ASCII" : target.name());
  const size_t columns = std::string_view("Content-Type: ").size() + type.size();
  type.append(columns + 1 + parameter.size() > line_columns ? "\r\n " : " ").append(parameter);

  if (ascii && needs_no_encoding(lines)) return make_part_head(type, "7bit") + lines;
  const size_t base64_size = measure_base64_lines(*body);
  std::string part = make_part_head(type, "quoted-printable");
  part.reserve(part.size() + base64_size + longest_line);
  if (measure_quoted(*body) <= base64_size && append_quoted(part, *body, base64_size)) return part;
  part = make_part_head(type, "base64");
  append_base64_lines(part, *body);
  return part;
}

}  // namespace

}  // namespace mail

char* i18n_mail_text(const char* subtype, const char* text, size_t length, const char* charset,
                     const char* mail_charset, i18n_mail_error_t* error) {
  return mail::call(
      error, [&] { return mail::make_text_part(subtype, text, length, charset, mail_charset); });
}
