// A converted chunk of text that knows where each of its units came from.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace i18n {

// offsets has one entry for each unit of text: the index, from where the chunk's conversion began,
// of the first input unit of the character that produced it, or -1 when the converter gave no
// source. A last entry holds the number of input units that the conversion consumed. Units of one
// character share one offset.
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
