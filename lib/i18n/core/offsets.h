// Room for the offsets that ICU writes beside converted text.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace i18n {

constexpr int32_t no_offset = -1;

// Some converters write up to two entries for each unit of the target (the GSM 03.38 tables of
// ICU 72 do, on the way to UTF-16), so an array has at least twice as many as the target has units.
// The entries are not initialised: others leave some unwritten, so whoever reads must fill them
// with no_offset first.
constexpr size_t offsets_for(size_t target_units) {
  constexpr size_t slack = 64;
  return 2 * target_units + slack;
}

inline std::unique_ptr<int32_t[]> allocate_offsets(size_t target_units) {
  return std::make_unique_for_overwrite<int32_t[]>(offsets_for(target_units));
}

inline void clear_offsets(int32_t* offsets, size_t count) {
  std::fill_n(offsets, count, no_offset);
}

}  // namespace i18n
