// How much ICU's converters take at once, and how much they write.
#pragma once

#include <cstddef>

namespace text {

// A call with a longer source, or with more room, is refused. What counts either has the smaller
// bound.
constexpr size_t most_bytes_at_once = 0x7fffffff;
constexpr size_t most_units_at_once = 0x3fffffff;

// Of the target: the GSM 03.38 tables of ICU 72 have two for some units, on the way to UTF-16.
constexpr size_t most_offsets_per_unit = 2;

}  // namespace text
