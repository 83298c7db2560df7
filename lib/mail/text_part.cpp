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

// Line ends are written as they are.
constexpr EscapeTable body_escapes = make_escape_table(
    [](char c) { return (is_printable(c) && c != '=') || is_one_of(c, line_end); });

// What some take for the line of a mailbox file, or for the end of a mail, and what every boundary
// begins with: a text can have no line that ends its part.
constexpr std::string_view mailbox_mark = "From ";
constexpr char end_mark = '.';
constexpr std::string_view boundary_mark = "--";

bool begins_badly(std::string_view line) {
  return line.starts_with(end_mark) || line.starts_with(mailbox_mark) ||
         line.starts_with(boundary_mark);
}

// The lines of a text one by one, without their ends, which are LF, CR LF or CR.
class LineReader {
 public:
  explicit LineReader(std::string_view text) : text_(text) {}

  bool at_end() const { return begin_ == text_.size(); }
  // Whether the line that was read last had an end.
  bool was_ended() const { return was_ended_; }
  std::string_view read() {
    // Looked for again only when it was passed, so that a text without one takes no longer.
    if (carriage_return_ < begin_ || begin_ == 0) carriage_return_ = find(line_end[0]);
    const size_t line_feed = find(line_end[1]);
    const size_t end = std::min(carriage_return_, line_feed);
    const std::string_view line = text_.substr(begin_, end - begin_);
    const bool has_both = end + 1 == line_feed && line_feed < text_.size();
    was_ended_ = end < text_.size();
    begin_ = std::min(end + (has_both ? line_end.size() : 1), text_.size());
    return line;
  }

 private:
  size_t find(char c) const { return std::min(text_.find(c, begin_), text_.size()); }

  std::string_view text_;
  size_t begin_ = 0;
  size_t carriage_return_ = 0;
  bool was_ended_ = false;
};

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
  for (LineReader lines(text); !lines.at_end();) {
    const std::string_view line = lines.read();
    if (line.size() > line_columns || begins_badly(line) || line.ends_with(' ') ||
        line.ends_with('\t') || !is_plain(line, with_escapes)) {
      return false;
    }
  }
  return true;
}

// With CR LF at the end of every line.
size_t measure_lines(std::string_view text) {
  static constexpr EscapeTable line_feed = mark_bytes("\n");
  const bool is_ended = text.empty() || is_one_of(text.back(), line_end);
  const size_t size = text.size() + (is_ended ? 0 : line_end.size());
  const size_t line_feeds = count_escapes(line_feed, text);
  size_t carriage_returns = 0, pairs = 0;
  for (size_t i = text.find(line_end[0]); i != text.npos; i = text.find(line_end[0], i + 1)) {
    ++carriage_returns;
    pairs += text.substr(i).starts_with(line_end) ? 1 : 0;
  }
  return size + line_feeds + carriage_returns - 2 * pairs;
}

char* put_lines(char* out, std::string_view text) {
  for (LineReader lines(text); !lines.at_end();) out = put(put(out, lines.read()), line_end);
  return out;
}

std::string end_lines(std::string_view text) {
  std::string lines(measure_lines(text), '\0');
  put_lines(lines.data(), text);
  return lines;
}

char* put_base64(char* out, std::string_view text) {
  constexpr size_t lines_at_once = 16;
  char bytes[lines_at_once * line_columns / transfer::group_chars * transfer::group_bytes];
  size_t size = 0;
  const auto add = [&](std::string_view more) {
    while (!more.empty()) {
      const std::string_view fitting = more.substr(0, sizeof bytes - size);
      put(bytes + size, fitting);
      size += fitting.size();
      more.remove_prefix(fitting.size());
      if (size < sizeof bytes) continue;
      out = put_base64_lines(out, {bytes, size});
      size = 0;
    }
  };
  for (LineReader lines(text); !lines.at_end(); add(line_end)) add(lines.read());
  return put_base64_lines(out, {bytes, size});
}

// Writes the lines of a text in quoted-printable as long as there may be more.
class QuotedWriter {
 public:
  // Behind the limit there must be room for this.
  static constexpr size_t slack = 2 * line_columns;

  QuotedWriter(char* out, const char* limit) : out_(out), limit_(limit) {}

  // Returns the end, or null when the limit was reached.
  char* write(std::string_view text) {
    for (size_t kept = 0; !text.empty();) {
      std::string_view piece = text.substr(0, longest_piece);
      text.remove_prefix(piece.size());
      // CR LF are one end.
      if (piece.ends_with(line_end[0]) && !text.empty()) {
        text = {text.data() - 1, text.size() + 1};
        piece.remove_suffix(1);
      }
      const char* const end =
          transfer::put_forms(forms_ + kept, body_escapes.data(), to_unsigned(piece), piece.size());
      kept = 0;
      for (LineReader lines({forms_, end}); !lines.at_end();) {
        const std::string_view line = lines.read();
        const bool is_whole = lines.was_ended() || text.empty();
        const std::string_view rest = put_line(line, is_whole);
        if (out_ > limit_) return nullptr;
        if (is_whole) continue;
        kept = rest.size();
        std::memmove(forms_, rest.data(), kept);
      }
    }
    return out_;
  }

 private:
  static constexpr size_t longest_piece = 1024;

  // Cuts the forms of a line into lines of the mail. Returns what has to wait for the rest of it.
  std::string_view put_line(std::string_view forms, bool is_whole) {
    const bool ends_in_blank = is_whole && forms.ends_with(' ');
    const size_t blank = ends_in_blank ? transfer::escape_size : 0;
    if (ends_in_blank) forms.remove_suffix(1);
    while (is_whole || forms.size() > line_columns) {
      size_t room = line_columns;
      if (begins_badly(forms)) {
        out_ = transfer::put_escape(out_, static_cast<unsigned char>(forms.front()));
        room -= transfer::escape_size;
        forms.remove_prefix(1);
      }
      const bool is_last = forms.size() + blank <= room;
      const size_t size = is_last
                              ? forms.size()
                              : transfer::cut_forms(forms.data(), std::min(room - 1, forms.size()));
      std::memcpy(out_, forms.data(), line_columns);
      out_ += size;
      forms.remove_prefix(size);
      if (is_last && ends_in_blank) out_ = transfer::put_escape(out_, ' ');
      if (!is_last) *out_++ = '=';
      out_ = transfer::put_line_break(out_);
      if (is_last || out_ > limit_) break;
    }
    return forms;
  }

  char* out_;
  const char* const limit_;
  // What is kept of a line, a piece, and what is read beyond for the sake of speed.
  char forms_[line_columns + longest_piece * transfer::escape_size + line_columns +
              transfer::form_slack];
};

Result make_text_part(const char* subtype, const char* bytes, size_t length, const char* charset,
                      const char* mail_charset) {
  const MediaType type = read_media_type(view(subtype), TypeNames::kSubtype, "charset");
  const SourceCharset source(charset);
  MailCharset target(mail_charset);
  const Text text(source, bytes, length, find_forbidden_in_body);
  const bool ascii = is_ascii(text.utf8());
  // Line ends can change the state, and so are converted as they are written.
  const bool has_escapes = !ascii && target.is_iso_2022_jp();
  const std::string lines = has_escapes ? end_lines(text.utf8()) : std::string();
  const auto body =
      ascii ? std::optional(text.utf8()) : target.convert(has_escapes ? lines : text.utf8());
  if (!body) text.fail_lacking(target);

  const bool is_plain = (ascii || has_escapes) && needs_no_encoding(*body, has_escapes);
  const size_t size = has_escapes ? body->size() : measure_lines(*body);
  const size_t base64_size = measure_base64_lines(size);

  const std::string parameter = std::string("charset=").append(ascii ? "US-ASCII" : target.name());
  const std::string content_type = make_content_type("text/", type, parameter);
  const std::string quoted_head = make_part_head(content_type, "quoted-printable");
  Result part =
      allocate_result(quoted_head.size() + std::max(size, base64_size) + QuotedWriter::slack);
  char* end = nullptr;
  if (is_plain) {
    end = put_lines(put(part.get(), make_part_head(content_type, "7bit")), *body);
  } else if (!has_escapes) {
    // What it takes at least.
    const size_t least = measure_forms(body_escapes, *body) + size - body->size();
    char* const begin = put(part.get(), quoted_head);
    if (least <= base64_size) end = QuotedWriter(begin, begin + base64_size).write(*body);
  }
  if (end == nullptr) {
    char* const begin = put(part.get(), make_part_head(content_type, "base64"));
    end = has_escapes ? put_base64_lines(begin, *body) : put_base64(begin, *body);
  }
  *end = '\0';
  return part;
}

}  // namespace

}  // namespace mail

char* i18n_mail_text(const char* subtype, const char* text, size_t length, const char* charset,
                     const char* mail_charset, i18n_mail_error_t* error) {
  return mail::call(
      error, [&] { return mail::make_text_part(subtype, text, length, charset, mail_charset); });
}
