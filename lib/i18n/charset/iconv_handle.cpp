// Conversion handles.
#include <new>
#include <utility>

#include <qorvii18n/i18n_iconv.h>

#include "charset/charset_handle.h"
#include "core/c_string.h"
#include "text/icu/converter.h"

struct i18n_iconv_t {
  text::ConverterPtr from_converter;
  text::ConverterPtr to_converter;
};

namespace {

text::ConverterPtr copy_or_open_anew(const UConverter* converter) try {
  if (text::is_copyable(converter)) return text::copy_converter(converter);
  UErrorCode status = U_ZERO_ERROR;
  text::ConverterPtr opened = text::open_converter(ucnv_getName(converter, &status));
  if (opened) text::make_strict(opened.get());
  return opened;
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace

i18n_iconv_t* i18n_iconv_open(const i18n_charset_t* to, const i18n_charset_t* from) {
  text::ConverterPtr from_copy = copy_or_open_anew(from->converter);
  if (!from_copy) return nullptr;
  text::ConverterPtr to_copy = copy_or_open_anew(to->converter);
  if (!to_copy) return nullptr;
  return new i18n_iconv_t{std::move(from_copy), std::move(to_copy)};
}

void i18n_iconv_close(i18n_iconv_t* handle) {
  if (handle == nullptr) return;
  handle->from_converter.reset();  // before the target: members go from the last to the first
  delete handle;
}

void i18n_iconv_reset(i18n_iconv_t* handle) {
  ucnv_reset(handle->from_converter.get());
  ucnv_reset(handle->to_converter.get());
}

int i18n_iconv(...) { return 1; }

int i18n_iconv_detect_codeset(...) { return 0; }

void i18n_iconv_free(void* buffer) { i18n::MallocDeleter()(buffer); }
