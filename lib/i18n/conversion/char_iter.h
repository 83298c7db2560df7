// Walks a converted chunk one source character at a time.
#pragma once

#include <cstdint>
#include <string>

#include "conversion/str_with_offsets.h"
#include "core/chunk_iter.h"

namespace i18n {

template <class T>
class CharIter;

// Adjacent bytes with the same offset came from the same character. An escape sequence that the
// converter wrote in front of a character belongs to it. Unlike a text, an empty chunk has no
// character: ask has_next_chunk() first. The converted chunk is borrowed and must outlive the walk.
template <>
class CharIter<char> : public ChunkIter<std::string> {
 public:
  explicit CharIter(const StrWithOffsets<char>& text);

  void next_chunk() override;
  bool has_next_chunk() override;

 private:
  std::int32_t position;
  const StrWithOffsets<char>* converted;
};

}  // namespace i18n
