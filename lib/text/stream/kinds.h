// What ICU's kinds of converters need when a text comes in pieces.
#pragma once

#include "text/icu/converter.h"

namespace text {

// A lossless converter for a charset that one was opened for before. Throws std::bad_alloc.
ConverterPtr open_again(const char* charset);

// False where ucnv_reset() leaves something of the former text behind.
bool is_reset_by_icu(const UConverter* converter);

// False where a character is the same bytes wherever it stands.
bool has_state(const UConverter* converter);

// Whether the charset has every code point, so that none can be written and read as another.
bool is_unicode(const UConverter* converter);

}  // namespace text
