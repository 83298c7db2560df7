#include "charset/converter.h"

#include <qorvii18n/i18n.hpp>

#include "charset/diagnostics.h"

namespace i18n {

ConverterPtr open_plain_converter(const char* name) {
  UErrorCode status = U_ZERO_ERROR;
  ConverterPtr converter(ucnv_open(name, &status));
  if (U_FAILURE(status)) return nullptr;
  return converter;
}

void make_strict(UConverter* converter) {
  ucnv_setFallback(converter, false);
  UErrorCode status = U_ZERO_ERROR;
  UConverterFromUCallback old_from_action;
  UConverterToUCallback old_to_action;
  const void* old_context;
  ucnv_setFromUCallBack(converter, UCNV_FROM_U_CALLBACK_STOP, nullptr, &old_from_action,
                        &old_context, &status);
  ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, &old_to_action, &old_context,
                      &status);
}

bool is_copyable(const UConverter* converter) {
  return ucnv_getType(converter) != UCNV_COMPOUND_TEXT;
}

ConverterPtr copy_converter(const UConverter* converter) {
  if (!is_copyable(converter)) return nullptr;
  UErrorCode status = U_ZERO_ERROR;
  return ConverterPtr(ucnv_clone(converter, &status));
}

UConverter* open_ucnv_converter(const char* name) {
  ConverterPtr converter = open_plain_converter(name);
  if (!converter) {
    print_message(Message::kCannotOpenConverter, name);
    return nullptr;
  }
  make_strict(converter.get());
  return converter.release();
}

}  // namespace i18n
