#include "fast/header_words.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <string_view>

#include "fast/header_chunks.h"
#include "i18n_mime_encoding/line_limits.h"
#include "transfer/base64.h"
#include "transfer/qp_forms.h"

namespace fast {

namespace {

constexpr std::string_view word_break = i18n_mime::word_line_break;
constexpr std::string_view word_end = i18n_mime::word_end;

char* put(char* out, std::string_view text) {
  std::memcpy(out, text.data(), text.size());
  return out + text.size();
}

// What stands between the contents of two words, and, without its first part, before the first.
class Fold {
 public:
  Fold(const char* charset, char letter) {
    assert(std::strlen(charset) <= longest_word_charset);
    char* out = put(put(text_, word_end), word_break);
    char* const prefix = out;
    out = put(put(out, "=?"), charset);
    *out++ = '?';
    *out++ = letter;
    *out++ = '?';
    size_ = static_cast<size_t>(out - text_);
    prefix_size_ = static_cast<size_t>(out - prefix);
  }

  std::string_view get_whole() const { return {text_, size_}; }
  std::string_view get_prefix() const { return get_whole().substr(size_ - prefix_size_); }
  // Of content, in a line that is not the first, and in the first.
  size_t get_room() const { return i18n_mime::max_word_line - size_; }
  size_t get_first_room() const { return get_room() + word_break.size(); }

 private:
  char text_[word_end.size() + word_break.size() + longest_word_charset + 5];
  size_t size_;
  size_t prefix_size_;
};

// Order of calls: begin(), the bytes of the text from front to back, end().
class QWords {
 public:
  QWords(const char* charset, const char* table, Output& output)
      : fold_(charset, 'Q'), table_(table), room_(fold_.get_first_room()), output_(output) {}

  void begin() {
    char* const out = output_.get_room(fold_.get_whole().size());
    output_.take_up_to(put(out, fold_.get_prefix()));
  }

  // Bytes that one word must hold.
  void append_whole(Bytes bytes) {
    char forms[transfer::escape_size * HeaderChunks::longest_first_run + transfer::form_slack];
    const size_t size = put_forms(forms, bytes);
    char* out = output_.get_room(fold_.get_whole().size() + size);
    if (size > room_) out = put_fold(out);
    room_ -= size;
    output_.take_up_to(put(out, {forms, size}));
  }

  // Whole characters, those of the text from begin to end.
  void append_characters(const HeaderText& text, size_t begin, size_t end) {
    char forms[transfer::escape_size * i18n::chunk_bytes + transfer::form_slack];
    const char* next = forms;
    size_t left = put_forms(forms, text.get().subspan(begin, end - begin));
    while (left > room_) {
      const size_t size = cut(text, begin, next);
      char* const out = output_.get_room(size + fold_.get_whole().size());
      output_.take_up_to(put_fold(put(out, {next, size})));
      next += size;
      left -= size;
    }
    char* const out = output_.get_room(left);
    output_.take_up_to(put(out, {next, left}));
    room_ -= left;
  }

  void end() { output_.take_up_to(put(output_.get_room(word_end.size()), word_end)); }

 private:
  size_t put_forms(char* forms, Bytes bytes) const {
    const char* const forms_end = transfer::put_forms(forms, table_, bytes.data(), bytes.size());
    return static_cast<size_t>(forms_end - forms);
  }

  // How much of the forms of bytes from begin on the word has room for. Moves begin behind that.
  size_t cut(const HeaderText& text, size_t& begin, const char* forms) const {
    size_t size = transfer::cut_forms(forms, room_);
    const auto escapes = static_cast<size_t>(std::count(forms, forms + size, '='));
    size_t end = begin + size - (transfer::escape_size - 1) * escapes;
    for (; size != 0 && text.continues_character(end); --end) {
      const bool is_escape =
          size >= transfer::escape_size && forms[size - transfer::escape_size] == '=';
      size -= is_escape ? transfer::escape_size : 1;
    }
    begin = end;
    return size;
  }

  char* put_fold(char* out) {
    room_ = fold_.get_room();
    return put(out, fold_.get_whole());
  }

  Fold fold_;
  const char* table_;
  size_t room_;  // in the word in work
  Output& output_;
};

}  // namespace

bool put_b_words(const HeaderText& text, const char* charset, Output& output) {
  const Fold fold(charset, 'B');
  const size_t most_groups = fold.get_room() / transfer::group_chars;
  HeaderChunks chunks(text, most_groups * transfer::group_bytes);
  for (bool is_first = true;; is_first = false) {
    if (!chunks.next()) return false;
    const Bytes chunk = chunks.get_chunk();
    char* out = output.get_room(fold.get_whole().size() + transfer::base64_size(chunk.size()));
    out = put(out, is_first ? fold.get_prefix() : fold.get_whole());
    output.take_up_to(transfer::put_base64(out, chunk.data(), chunk.size()));
    if (!chunks.has_next()) break;
  }
  output.take_up_to(put(output.get_room(word_end.size()), word_end));
  return true;
}

bool put_q_words(const HeaderText& text, const char* charset, const char* table, Output& output) {
  HeaderChunks chunks(text, i18n::chunk_bytes);
  QWords words(charset, table, output);
  words.begin();
  do {
    if (!chunks.next()) return false;
    const Bytes chunk = chunks.get_chunk();
    const size_t first_run = chunks.get_first_run();
    if (first_run != 0) words.append_whole(chunk.first(first_run));
    words.append_characters(text, chunks.get_begin() + first_run,
                            chunks.get_begin() + chunk.size());
  } while (chunks.has_next());
  words.end();
  return true;
}

}  // namespace fast
