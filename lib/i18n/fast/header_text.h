// The text of a header in the charset that it is written in, and which bytes are one character.
#pragma once

#include <vector>

#include "core/bytes.h"
#include "text/tables/charset.h"
#include "text/unicode/utf8.h"

namespace fast {

using i18n::Bytes;

class HeaderText {
 public:
  // UTF-8, which is looked at as far as is asked for, and can be ill-formed.
  explicit HeaderText(Bytes text) : text_(text) {}

  // Converts a text. False when that is for ICU.
  bool convert(const text::Charset& from, const text::Charset& to);

  Bytes get() const { return text_; }
  bool is_utf8() const { return kind_ == Kind::kUtf8; }
  bool is_single_byte() const { return kind_ == Kind::kSingleByte; }
  bool continues_character(size_t at) const {
    if (is_single_byte()) return false;
    return is_utf8() ? text::continues_character(text_[at]) : marks_[at] == 0;
  }
  // Where the character ends that begins there.
  size_t end_character(size_t at) const {
    do ++at;
    while (at < text_.size() && continues_character(at));
    return at;
  }
  // How far so many UTF-16 units reach.
  text::Reach reach_units(size_t begin, size_t max_units) const;

 private:
  enum class Kind { kUtf8, kSingleByte, kMarked };

  bool convert_single_bytes(const text::Table& table);
  bool convert_and_mark(const text::Table& table);

  Bytes text_;
  Kind kind_ = Kind::kUtf8;
  std::vector<unsigned char> utf8_, bytes_;
  // Where characters have several bytes: for each byte the number of UTF-16 units of the character
  // that it begins, if it begins one.
  std::vector<unsigned char> marks_;
};

}  // namespace fast
