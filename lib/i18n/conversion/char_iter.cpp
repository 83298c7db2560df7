#include "conversion/char_iter.h"

namespace i18n {

CharIter<char>::CharIter(const StrWithOffsets<char>& text) : position(0), converted(&text) {}

bool CharIter<char>::has_next_chunk() {
  return static_cast<size_t>(position) < converted->text.size();
}

void CharIter<char>::next_chunk() {
  const auto begin = static_cast<size_t>(position);
  const auto size = converted->text.size();
  const auto& offsets = converted->offsets;
  size_t end = begin;
  while (end < size && offsets[end] == offsets[begin]) ++end;
  chunk.assign(converted->text, begin, end - begin);
  position = static_cast<std::int32_t>(end);
}

}  // namespace i18n
