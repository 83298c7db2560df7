// i18n_mail_header(): an unstructured field.
#include <algorithm>
#include <vector>

#include "mail/call.h"
#include "mail/lines.h"
#include "mail/mail_charset.h"
#include "mail/names.h"
#include "mail/text.h"
#include "mail/words.h"

namespace mail {

namespace {

// A stretch of the text between two single blanks: a plain word, or text to encode.
struct Stretch {
  size_t begin;
  size_t end;
  bool plain;

  size_t columns() const { return end - begin; }
};

bool is_plain_word(std::string_view word) {
  constexpr size_t longest = longest_line - longest_field_name - std::string_view(": ").size();
  if (word.empty() || word.size() > longest || word.front() == '=' || word.back() == '=') {
    return false;
  }
  char last = ' ';
  for (const char c : word) {
    if (!is_visible(c) || (last == '=' && c == '?')) return false;
    last = c;
  }
  return true;
}

// Neighbours to be encoded are one stretch, with the blanks that belong to them.
std::vector<Stretch> split(std::string_view text) {
  std::vector<Stretch> stretches;
  stretches.reserve(8);
  for (size_t begin = 0; begin <= text.size() && !text.empty();) {
    const size_t end = std::min(text.find(' ', begin), text.size());
    // Two blanks in a row have an empty word between them, as has a blank at either end: its
    // neighbours are none between single blanks.
    const bool after_empty = begin > 1 ? text[begin - 2] == ' ' : begin == 1;
    const bool before_empty = end + 1 < text.size() ? text[end + 1] == ' ' : end + 1 == text.size();
    const bool plain =
        !after_empty && !before_empty && is_plain_word(text.substr(begin, end - begin));
    if (!plain && !stretches.empty() && !stretches.back().plain) {
      stretches.back().end = end;
    } else {
      stretches.push_back({begin, end, plain});
    }
    begin = end + 1;
  }
  return stretches;
}

class HeaderWriter {
 public:
  HeaderWriter(MailCharset& charset, std::string_view text)
      : text_(text), words_(charset, text_escapes, text), stretches_(split(text)) {}

  // The shorter one of what words of each kind make, Q when they are equal.
  std::string write(std::string_view name, bool with_q) {
    const bool has_words = !std::ranges::all_of(stretches_, &Stretch::plain);
    if (!has_words || !with_q) {
      return write(name, WordKind::kB, std::string::npos, name.size() + text_.size());
    }
    const Least q = measure(name, WordKind::kQ), b = measure(name, WordKind::kB);
    std::string as_q, as_b;
    if (q.field < b.field) {
      as_q = write(name, WordKind::kQ, std::string::npos, q.field);
      if (q.stretches <= as_q.size() && as_q.size() <= b.field) return as_q;
    }
    as_b = write(name, WordKind::kB, std::string::npos, b.field);
    if (std::max(q.stretches, q.field) > as_b.size()) return as_b;
    if (as_q.empty()) as_q = write(name, WordKind::kQ, as_b.size(), q.field);
    return as_q.size() <= as_b.size() ? as_q : as_b;
  }

 private:
  struct Least {
    size_t stretches;  // each written alone, without what stands between them
    size_t field;
  };

  // What the field takes at least with words of that kind. Stretches that may become one can share
  // words.
  Least measure(std::string_view name, WordKind kind) {
    const size_t head = name.size() + std::string_view(": ").size();
    const size_t overhead = words_.overhead(), room = longest_word - overhead;
    Least least{0, head};
    size_t contents = 0, words = 0, encoded = 0;
    bool may_share = false;
    for (size_t i = 0; i < stretches_.size(); ++i) {
      const Stretch& stretch = stretches_[i];
      if (i > 0) ++least.field;
      if (stretch.plain) {
        least.stretches += stretch.columns();
        least.field += stretch.columns();
        continue;
      }
      const size_t columns = words_.measure(stretch.begin, stretch.end, kind);
      const size_t padding = kind == WordKind::kB ? transfer::group_bytes - 1 : 0;
      const size_t content = std::max(columns, overhead + padding) - overhead - padding;
      least.stretches += columns;
      words += std::max<size_t>(1, (content + room - 1) / room);
      contents += content;
      ++encoded;
      const size_t next = i + 1 < stretches_.size() ? 1 + stretches_[i + 1].columns() : 0;
      may_share = may_share || columns + next + (i == 0 ? head : 0) > longest_word;
    }
    if (may_share) words = (contents + room - 1) / room;
    constexpr size_t fold = line_end.size() + 1;
    least.field += contents + words * overhead;
    if (words > encoded) least.field += (words - encoded) * fold;
    return least;
  }

  // Gives up when the field gets longer than `most`.
  std::string write(std::string_view name, WordKind kind, size_t most, size_t expected) {
    Field field(name);
    field.text().reserve(expected + expected / 8);
    for (size_t i = 0; i < stretches_.size() && field.text().size() <= most;) {
      if (stretches_[i].plain) {
        field.separate(stretches_[i].columns());
        field.text() += text_.substr(stretches_[i].begin, stretches_[i].columns());
        ++i;
      } else {
        i = write_words(field, i, kind, most);
      }
    }
    return std::move(field.text());
  }

  // Writes the stretch, and what must be encoded with it. Returns the index of the next.
  //
  // What is before `at` is written, what is before `end` must be encoded, and `index` is the
  // stretch after that. An example, in Q words beside "Subject: ", which leaves 67 columns: a u
  // umlaut of two bytes, a word of 51 letters, and the word y.
  //
  //   at   end   index
  //    0     2     1     The umlaut is a word of 18 columns, and the letters do not fit beside it.
  //                      The line is fresh and cannot be folded, so they are encoded, too.
  //    0    54     2     A word has room for all up to 49. It is written, and the line folded.
  //   49    54     2     The rest is a word, and y fits beside it.
  //
  // Had the line not been fresh, it would have been folded, and the first row tried once more.
  size_t write_words(Field& field, size_t index, WordKind kind, size_t most) {
    size_t at = stretches_[index].begin;
    for (++index; field.text().size() <= most;) {
      const size_t end = stretches_[index - 1].end;
      Word word = words_.cut(at, end, std::min(field.room(), longest_word), kind);
      // Only beside a long name: its line cannot be folded before.
      if (word.end == at && field.is_fresh()) word = words_.cut(at, end, longest_word, kind);
      const bool complete = word.end == end;
      // Nothing is folded between an encoded word and a plain one.
      const bool in_the_way = complete && index < stretches_.size() &&
                              word.columns + 1 + stretches_[index].columns() > field.room();
      if ((!complete || in_the_way) && !field.is_fresh()) {
        field.fold();
        continue;
      }
      if (in_the_way) {
        ++index;  // a plain word: encoded, too, with whatever comes after it
        if (index < stretches_.size() && !stretches_[index].plain) ++index;
        continue;
      }
      field.separate(word.columns);
      words_.append(field.text(), at, word);
      at = word.end;
      if (at == end) break;
      field.fold();
    }
    return index;
  }

  std::string_view text_;
  WordMaker words_;
  std::vector<Stretch> stretches_;
};

std::string make_header(const char* name, const char* bytes, size_t length, const char* charset,
                        const char* mail_charset) {
  check_name(view(name), longest_field_name, is_of_field_name);
  const SourceCharset source(charset);
  MailCharset target(mail_charset);
  const Text text(source, bytes, length, find_forbidden_in_field);
  if (!target.convert(text.utf8())) text.fail_lacking(target);
  HeaderWriter writer(target, text.utf8());
  return writer.write(name, !target.is_iso_2022_jp());
}

}  // namespace

}  // namespace mail

char* i18n_mail_header(const char* name, const char* text, size_t length, const char* charset,
                       const char* mail_charset, i18n_mail_error_t* error) {
  return mail::call(error,
                    [&] { return mail::make_header(name, text, length, charset, mail_charset); });
}
