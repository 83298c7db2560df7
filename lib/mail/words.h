// Encoded words: text cut where no reader sees it.
#pragma once

#include <string>
#include <string_view>

#include "mail/clusters.h"
#include "mail/encodings.h"
#include "mail/mail_charset.h"

namespace mail {

constexpr size_t longest_word = 75;

enum class WordKind : char { kQ = 'Q', kB = 'B' };

// '?' and '=' mark a word, and '_' is a blank in one. Names allow less.
inline constexpr EscapeTable text_escapes =
    make_escape_table([](char c) { return is_visible(c) && !is_one_of(c, "=?_"); });
inline constexpr EscapeTable phrase_escapes =
    make_escape_table([](char c) { return is_alphanumeric(c) || is_one_of(c, "!*+-/"); });

struct Word {
  size_t end;  // of its text; where that begins when no character fits
  WordKind kind;
  size_t columns;
};

class WordMaker {
 public:
  // The text must be the one that the charset converted last. All is borrowed.
  WordMaker(MailCharset& charset, const EscapeTable& escapes, std::string_view text)
      : charset_(charset), escapes_(escapes), text_(text) {}

  // The word to write for the text from `begin`, of at most so many columns: all up to `end` if it
  // fits, else as much as can be cut off. It is of the given kind if that can be.
  Word cut(size_t begin, size_t end, size_t columns, WordKind kind);

  void append(std::string& line, size_t begin, const Word& word);

  // Columns of a word.
  size_t measure(size_t begin, size_t end, WordKind kind);

  // What a word has around its content.
  size_t overhead() const {
    return charset_.name().size() + std::string_view(
                                        "=?"
                                        "?Q?"
                                        "?=")
                                        .size();
  }

 private:
  size_t count_fitting(std::string_view bytes, size_t columns) const;
  size_t find_longest(size_t begin, size_t end, size_t columns, WordKind kind);
  // Where the text can be cut, at `longest` or before; `begin` when nowhere.
  template <class IsGood>
  size_t find_cut(size_t begin, size_t longest, IsGood is_good);
  bool is_padded(size_t begin, size_t end);
  MailCharset& charset_;
  const EscapeTable& escapes_;
  std::string_view text_;
  Clusters clusters_;
};

}  // namespace mail
