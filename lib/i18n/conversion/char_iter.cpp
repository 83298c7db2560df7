#include "conversion/char_iter.h"

namespace i18n {

CharIter<char>::CharIter(const StrWithOffsets<char>& converted)
    : position(0), text(converted.text), offsets(converted.offsets) {}

bool CharIter<char>::has_next_chunk() { return static_cast<size_t>(position) < text.size(); }

void CharIter<char>::next_chunk() {
  const auto begin = static_cast<size_t>(position);
  size_t end = begin;
  while (end < text.size() && offsets[end] == offsets[begin]) ++end;
  chunk.assign(text, begin, end - begin);
  position = static_cast<std::int32_t>(end);
}

}  // namespace i18n
