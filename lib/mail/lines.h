// A field while it is written: its lines and the columns that are left on the last one.
#pragma once

#include <string>
#include <string_view>

namespace mail {

constexpr size_t line_columns = 76;
constexpr size_t longest_line = 998;
constexpr std::string_view line_end = "\r\n";

class Field {
 public:
  explicit Field(std::string_view name) : text_(name) {
    text_ += ": ";
    fresh_size_ = text_.size();
  }

  // The line begins with the name and ": ", or with the blank of a fold, and has nothing else yet.
  bool is_fresh() const { return text_.size() == fresh_size_; }
  bool is_first_line() const { return line_begin_ == 0; }
  size_t columns() const { return text_.size() - line_begin_; }
  // What fits after a blank, which only a fresh line has already.
  size_t room() const {
    const size_t taken = columns() + (is_fresh() ? 0 : 1);
    return taken < line_columns ? line_columns - taken : 0;
  }

  // Puts what follows on a fresh line, which it cannot be right after the colon.
  void fold() {
    if (is_fresh()) return;
    text_ += line_end;
    line_begin_ = text_.size();
    text_ += ' ';
    fresh_size_ = text_.size();
  }
  // The blank in front of what follows, folded when that has more columns than fit.
  void separate(size_t columns) {
    if (columns > room()) return fold();
    if (!is_fresh()) text_ += ' ';
  }
  // What was written. Who appends to it appends to the last line.
  std::string& text() { return text_; }

 private:
  std::string text_;
  size_t line_begin_ = 0;
  size_t fresh_size_;
};

}  // namespace mail
