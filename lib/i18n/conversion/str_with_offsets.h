// A converted chunk of text that knows where each of its units came from.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace i18n {

// offsets has one entry for each unit of text: where the character that it belongs to begins in the
// input, counted from where this chunk began; -1 when the converter did not say. One more entry,
// the last, is how many input units the chunk took. Units of one character have one offset. Both
// are borrowed from whoever converted.
template <class T>
struct StrWithOffsets {
  std::basic_string_view<T> text;
  std::span<const std::int32_t> offsets;
};

}  // namespace i18n
