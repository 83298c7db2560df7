// The text of a header in the charset that it is written in, and which bytes are one character.
#pragma once

#include <memory>

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
  bool continues_character(size_t at) const {
    if (kind_ == Kind::kSingleByte) return false;
    return kind_ == Kind::kUtf8 ? text::continues_character(text_[at]) : marks_[at] == 0;
  }
  // Where the character ends that begins there.
  size_t end_character(size_t at) const {
    do ++at;
    while (at < text_.size() && continues_character(at));
    return at;
  }
  // How far so many UTF-16 units reach. Characters can have vanished before the first one: how many
  // of their units lie before what is asked for, and then, before what comes next.
  text::Reach reach_units(size_t begin, size_t max_units, size_t& vanished) const;

 private:
  enum class Kind { kUtf8, kSingleByte, kMarked };

  // Memory that need not come from the heap for most headers.
  class Room {
   public:
    unsigned char* get(size_t size) {
      if (size <= sizeof near_) return near_;
      far_ = std::make_unique_for_overwrite<unsigned char[]>(size);
      return far_.get();
    }

   private:
    unsigned char near_[256];
    std::unique_ptr<unsigned char[]> far_;
  };

  bool convert_single_bytes(const text::Table& table);
  bool convert_and_mark(const text::Table& table);
  unsigned char* make_marks(size_t size);
  bool skip_vanishing(const text::Table& table, size_t size);

  Bytes text_;
  Kind kind_ = Kind::kUtf8;
  Room utf8_, bytes_, mark_room_;
  // Where characters have several bytes, or some vanished: for each byte the number of UTF-16 units
  // of the character that it begins, if it begins one, and, above those bits, the number of units
  // that vanished before it.
  static constexpr unsigned unit_bits = 2;
  unsigned char* marks_ = nullptr;
};

}  // namespace fast
