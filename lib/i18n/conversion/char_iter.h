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
  explicit CharIter(const StrWithOffsets<char>& text) : position(0), converted(text) {}

  bool has_next_chunk() override { return position < converted.text.size(); }

  void next_chunk() override {
    size_t end = position;
    while (end < converted.text.size() && converted.offsets[end] == converted.offsets[position]) {
      ++end;
    }
    chunk = converted.text.substr(position, end - position);
    position = end;
  }

 private:
  size_t position;
  StrWithOffsets<char> converted;
};

}  // namespace i18n
