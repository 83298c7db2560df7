// The charsets that inputs name by their position.
#pragma once

namespace fuzz {

inline constexpr const char* charsets[] = {
#include "charsets.inc"
};

}  // namespace fuzz
