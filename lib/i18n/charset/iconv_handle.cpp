// Conversion handles.
#include <memory>
#include <utility>

#include <qorvii18n/i18n_iconv.h>

#include "charset/charset.h"
#include "charset/converter.h"
#include "core/c_string.h"

struct i18n_iconv_t {
  i18n::ConverterPtr from_converter;
  i18n::ConverterPtr to_converter;
};

namespace {

i18n::ConverterPtr copy_or_open_anew(const UConverter* converter, UErrorCode* status) {
  if (i18n::is_copyable(converter)) return i18n::ConverterPtr(ucnv_clone(converter, status));
  i18n::ConverterPtr opened(ucnv_open(ucnv_getName(converter, status), status));
  if (opened) i18n::make_strict(opened.get());
  return opened;
}

}  // namespace

i18n_iconv_t* i18n_iconv_open(const i18n_charset_t* to, const i18n_charset_t* from) {
  UErrorCode status = U_ZERO_ERROR;  // after a failure of the first, the second fails at once
  i18n::ConverterPtr from_copy = copy_or_open_anew(from->converter, &status);
  i18n::ConverterPtr to_copy = copy_or_open_anew(to->converter, &status);
  if (!from_copy || !to_copy) return nullptr;
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
