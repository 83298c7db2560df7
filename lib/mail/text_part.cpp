// i18n_mail_text(): a part with a text.
#include <algorithm>
#include <optional>

#include "mail/call.h"
#include "mail/mail_charset.h"
#include "mail/media_type.h"
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

// Whether a line that begins in ASCII has no control but TAB and escape sequences, which may stand
// there, and ends in ASCII.
bool is_plain(std::string_view line, bool with_escapes) {
  constexpr char escape = '\x1B';
  constexpr std::string_view to_ascii = "\x1B(B";
  bool in_ascii = true;
  for (size_t i = 0; i < line.size(); ++i) {
    if (with_escapes && line[i] == escape) {
      in_ascii = line.substr(i).starts_with(to_ascii);
      i += to_ascii.size() - 1;
    } else if (!is_printable(line[i]) && line[i] != '\t') {
      return false;
    }
  }
  return in_ascii;
}

bool needs_no_encoding(std::string_view text, bool with_escapes) {
  bool needs_none = true;
  for_each_line(text, [&](std::string_view line) {
    needs_none = line.size() <= line_columns && !begins_badly(line) && !line.ends_with(' ') &&
                 !line.ends_with('\t') && is_plain(line, with_escapes);
    return needs_none;
  });
  return needs_none;
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
  const MediaType type = read_media_type(view(subtype), TypeNames::kSubtype, "charset");
  const SourceCharset source(charset);
  MailCharset target(mail_charset);
  const Text text(source, bytes, length, find_forbidden_in_body);
  const std::string lines = end_lines(text.utf8());
  const bool ascii = is_ascii(lines);
  const auto body = ascii ? std::optional<std::string_view>(lines) : target.convert(lines);
  if (!body) text.fail_lacking(target);

  const std::string parameter = std::string("charset=").append(ascii ? "US-ASCII" : target.name());
  const std::string content_type = make_content_type("text/", type, parameter);
  const bool has_escapes = !ascii && target.is_iso_2022_jp();
  if ((ascii || has_escapes) && needs_no_encoding(*body, has_escapes)) {
    return make_part_head(content_type, "7bit").append(*body);
  }
  const size_t base64_size = measure_base64_lines(body->size());
  std::string part = make_part_head(content_type, "quoted-printable");
  part.reserve(part.size() + base64_size + longest_line);
  if (!has_escapes && measure_quoted(*body) <= base64_size &&
      append_quoted(part, *body, base64_size)) {
    return part;
  }
  part = make_part_head(content_type, "base64");
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
