#include "support/default_charset.h"

#include <unicode/ucnv.h>

namespace {
const char* default_charset = "UTF-8";
}

void set_default_charset(const char* name) { default_charset = name; }

// Takes the place of ICU's own for the whole test program.
const char* ucnv_getDefaultName() { return default_charset; }
