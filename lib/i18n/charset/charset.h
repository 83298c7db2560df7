// What a charset handle holds.
#pragma once

#include <qorvii18n/i18n_charset.h>

struct UConverter;

struct i18n_charset_t {
  UConverter* converter;  // owned, strict, never closed
  const char* name;       // the preferred name, in ICU's alias data
};
