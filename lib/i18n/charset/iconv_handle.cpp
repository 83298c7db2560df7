// Conversion handles.
#include <memory>

#include <qorvii18n/i18n_iconv.h>

#include "charset/charset.h"
#include "charset/converter.h"
#include "core/c_string.h"

struct i18n_iconv_t {
  i18n::ConverterPtr from_converter;
  i18n::ConverterPtr to_converter;
};

i18n_iconv_t* i18n_iconv_open(const i18n_charset_t* to, const i18n_charset_t* from) {
  UErrorCode status = U_ZERO_ERROR;
  i18n::ConverterPtr from_clone(ucnv_clone(from->converter, &status));
  i18n::ConverterPtr to_clone(ucnv_clone(to->converter, &status));
  if (!from_clone || !to_clone) return nullptr;
  return new i18n_iconv_t{std::move(from_clone), std::move(to_clone)};
}

void i18n_iconv_close(i18n_iconv_t* handle) { delete handle; }

void i18n_iconv_reset(i18n_iconv_t* handle) {
  ucnv_reset(handle->from_converter.get());
  ucnv_reset(handle->to_converter.get());
}

int i18n_iconv(...) { return 1; }

int i18n_iconv_detect_codeset(...) { return 0; }

void i18n_iconv_free(void* buffer) { i18n::MallocDeleter()(buffer); }
