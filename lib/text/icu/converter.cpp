#include "text/icu/converter.h"

#include <new>

namespace text {

namespace {

// ICU's own callback leaves out characters that show nothing.
void stop(const void*, UConverterFromUnicodeArgs*, const UChar*, int32_t, UChar32,
          UConverterCallbackReason, UErrorCode*) {}

void set_up(UConverter* converter, UConverterFromUCallback stop_writing) {
  ucnv_setFallback(converter, false);
  UErrorCode status = U_ZERO_ERROR;
  ucnv_setFromUCallBack(converter, stop_writing, nullptr, nullptr, nullptr, &status);
  ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
}

}  // namespace

void check_memory(UErrorCode status) {
  if (status == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
}

const char* find_standard_name(const char* charset) {
  for (const char* const standard : {"MIME", "IANA"}) {
    UErrorCode status = U_ZERO_ERROR;
    const char* const name = ucnv_getStandardName(charset, standard, &status);
    check_memory(status);
    if (name != nullptr) return name;
  }
  return nullptr;
}

ConverterPtr open_converter(const char* charset) {
  UErrorCode status = U_ZERO_ERROR;
  ConverterPtr converter(ucnv_open(charset, &status));
  check_memory(status);
  if (U_FAILURE(status)) return nullptr;
  return converter;
}

void make_strict(UConverter* converter) { set_up(converter, UCNV_FROM_U_CALLBACK_STOP); }

bool is_copyable(const UConverter* converter) {
  return ucnv_getType(converter) != UCNV_COMPOUND_TEXT;
}

ConverterPtr copy_converter(const UConverter* converter) {
  if (!is_copyable(converter)) return nullptr;
  UErrorCode status = U_ZERO_ERROR;
  ConverterPtr copy(ucnv_clone(converter, &status));
  check_memory(status);
  return copy;
}

ConverterPtr open_lossless(const char* charset) {
  ConverterPtr converter = open_converter(charset);
  if (!converter || !is_copyable(converter.get())) return nullptr;
  set_up(converter.get(), stop);
  return converter;
}

ConverterPtr open_lossless_again(const char* charset) {
  ConverterPtr converter = open_lossless(charset);
  if (!converter) throw std::bad_alloc();
  return converter;
}

}  // namespace text
