// Strict ICU converters: no fallback mappings, and a stop at the first character that cannot be
// converted.
#pragma once

#include <memory>

#include <unicode/ucnv.h>

namespace i18n {

struct ConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using ConverterPtr = std::unique_ptr<UConverter, ConverterCloser>;

// Null when ICU does not know the name. Not yet strict.
ConverterPtr open_plain_converter(const char* name);

void make_strict(UConverter* converter);

// False for compound text: ICU copies that converter together with the pointers to what it owns,
// and the copy would release that when it is closed.
bool is_copyable(const UConverter* converter);

// A copy in the same state, null when there can be none.
ConverterPtr copy_converter(const UConverter* converter);

}  // namespace i18n
