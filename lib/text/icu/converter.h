// ICU's converters, opened and copied. What ICU refuses is null; when it has no memory,
// std::bad_alloc is thrown.
#pragma once

#include <memory>

#include <unicode/ucnv.h>

namespace text {

struct ConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using ConverterPtr = std::unique_ptr<UConverter, ConverterCloser>;

// Throws when that is what a status says. All else is left to the caller.
void check_memory(UErrorCode status);

// The name of a charset that is preferred for MIME, or else the one that is registered at IANA.
// Null when there is neither.
const char* find_standard_name(const char* charset);

// Null when ICU does not know the name. Not yet strict.
ConverterPtr open_converter(const char* charset);

// No fallback mappings, and a stop at the first character that cannot be converted. Only characters
// that show nothing are left out by ICU where the target lacks them.
void make_strict(UConverter* converter);

// False for compound text: ICU copies that converter together with the pointers to what it owns,
// and the copy would release that when it is closed.
bool is_copyable(const UConverter* converter);

// A copy in the same state, null when there can be none.
ConverterPtr copy_converter(const UConverter* converter);

// A strict converter that stops at characters that show nothing, too. Null also for what cannot be
// copied.
ConverterPtr open_lossless(const char* charset);

// The same for a charset that one was opened for before. Throws std::bad_alloc.
ConverterPtr open_lossless_again(const char* charset);

}  // namespace text
