// What is known of ICU's kinds of converters.
#pragma once

#include <unicode/ucnv.h>

namespace text {

// Whether characters are bytes by themselves, so that there may be tables.
constexpr bool has_no_states(UConverterType type) {
  return type == UCNV_SBCS || type == UCNV_DBCS || type == UCNV_MBCS || type == UCNV_LATIN_1 ||
         type == UCNV_US_ASCII;
}

constexpr bool is_single_byte(UConverterType type) {
  return type == UCNV_SBCS || type == UCNV_LATIN_1 || type == UCNV_US_ASCII;
}

// Whether what a converter gives does not depend on how much of the text a call sees. Some look
// ahead, or choose between forms by what they see.
constexpr bool is_independent(UConverterType type) {
  return has_no_states(type) || type == UCNV_UTF8 || type == UCNV_EBCDIC_STATEFUL ||
         type == UCNV_ISO_2022;
}

}  // namespace text
