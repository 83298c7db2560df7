// Room for the offsets that ICU writes beside converted text.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "text/icu/limits.h"

namespace i18n {

constexpr int32_t no_offset = -1;

// For as many entries as any converter writes. They are not initialised: some converters leave some
// unwritten, so whoever reads must fill them with no_offset first.
constexpr size_t offsets_for(size_t target_units) {
  constexpr size_t slack = 64;
  return text::most_offsets_per_unit * target_units + slack;
}

inline std::unique_ptr<int32_t[]> allocate_offsets(size_t target_units) {
  return std::make_unique_for_overwrite<int32_t[]>(offsets_for(target_units));
}

inline void clear_offsets(int32_t* offsets, size_t count) {
  std::fill_n(offsets, count, no_offset);
}

}  // namespace i18n
