// A converted chunk of text that knows where each of its units came from.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace i18n {

// offsets has one entry for each unit of text: where the character that it belongs to begins in the
// input, counted from where this chunk began; -1 when the converter did not say. One more entry,
// the last, is how many input units the chunk took. Units of one character have one offset.
template <class T>
struct StrWithOffsets {
  StrWithOffsets() = default;
  StrWithOffsets(const T* begin, const T* end, const std::int32_t* offsets_begin,
                 const std::int32_t* offsets_end)
      : text(begin, end), offsets(offsets_begin, offsets_end) {}

  std::basic_string<T> text;
  std::vector<std::int32_t> offsets;
};

}  // namespace i18n
