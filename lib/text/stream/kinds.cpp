#include "text/stream/kinds.h"

#include <new>

#include "text/icu/converter_types.h"

namespace text {

ConverterPtr open_again(const char* charset) {
  ConverterPtr converter = open_lossless(charset);
  if (converter == nullptr) throw std::bad_alloc();
  return converter;
}

bool is_reset_by_icu(const UConverter* converter) {
  const UConverterType type = ucnv_getType(converter);
  return type < UCNV_LMBCS_1 || type > UCNV_LMBCS_LAST;
}

bool has_state(const UConverter* converter) {
  const UConverterType type = ucnv_getType(converter);
  return !has_no_states(type) && type != UCNV_UTF8 && type != UCNV_CESU8;
}

bool is_unicode(const UConverter* converter) {
  switch (ucnv_getType(converter)) {
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

}  // namespace text
