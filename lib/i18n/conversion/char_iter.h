// Walks a converted chunk one source character at a time.
#pragma once

#include <cstddef>
#include <string_view>

#include "conversion/str_with_offsets.h"
#include "core/chunk_iter.h"

namespace i18n {

template <class T>
class CharIter;

// Adjacent bytes with the same offset came from the same character. An escape sequence that the
// converter wrote in front of a character belongs to it. Unlike a text, an empty chunk has no
// character: ask has_next_chunk() first. What the chunk borrows must outlive the walk.
template <>
class CharIter<char> final : public ChunkIter<std::string_view> {
 public:
  explicit CharIter(const StrWithOffsets<char>& text) : position_(0), converted_(text) {}

  bool has_next_chunk() override { return position_ < converted_.text.size(); }

  void next_chunk() override {
    size_t end = position_;
    while (end < converted_.text.size() &&
           converted_.offsets[end] == converted_.offsets[position_]) {
      ++end;
    }
    chunk = converted_.text.substr(position_, end - position_);
    position_ = end;
  }

 private:
  size_t position_;
  StrWithOffsets<char> converted_;
};

}  // namespace i18n
