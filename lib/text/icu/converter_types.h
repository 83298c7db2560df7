// What is known of ICU's types of converters.
#pragma once

#include <unicode/ucnv.h>

namespace text {

// Whether characters are bytes by themselves, so that there may be tables.
constexpr bool is_plain(UConverterType type) {
  return type == UCNV_SBCS || type == UCNV_DBCS || type == UCNV_MBCS || type == UCNV_LATIN_1 ||
         type == UCNV_US_ASCII;
}

constexpr bool is_single_byte(UConverterType type) {
  return type == UCNV_SBCS || type == UCNV_LATIN_1 || type == UCNV_US_ASCII;
}

// Whether what a converter gives does not depend on how much of the text a call sees. Some look
// ahead, or choose between forms by what they see.
constexpr bool is_independent(UConverterType type) {
  return is_plain(type) || type == UCNV_UTF8 || type == UCNV_EBCDIC_STATEFUL ||
         type == UCNV_ISO_2022;
}

// Whether a character is the same bytes wherever it stands.
constexpr bool has_no_states(UConverterType type) {
  return is_plain(type) || type == UCNV_UTF8 || type == UCNV_CESU8;
}

// Whether the charset has every code point, so that none can be written and read as another.
constexpr bool is_unicode(UConverterType type) {
  switch (type) {
    case UCNV_UTF8:
    case UCNV_UTF16_BigEndian:
    case UCNV_UTF16_LittleEndian:
    case UCNV_UTF32_BigEndian:
    case UCNV_UTF32_LittleEndian:
    case UCNV_SCSU:
    case UCNV_UTF7:
    case UCNV_BOCU1:
    case UCNV_UTF16:
    case UCNV_UTF32:
    case UCNV_CESU8:
    case UCNV_IMAP_MAILBOX:
      return true;
    default:
      return false;
  }
}

// Whether ucnv_reset() leaves nothing of the former text behind.
constexpr bool is_reset_by_icu(UConverterType type) {
  return type < UCNV_LMBCS_1 || type > UCNV_LMBCS_LAST;
}

// Whether how a character is written depends on what comes after it in a call.
constexpr bool writes_ahead(UConverterType type) {
  return type == UCNV_SCSU || !is_reset_by_icu(type);
}

}  // namespace text
