// One-shot conversion without ICU, which is left what is not certain: invalid text, characters that
// the target lacks, converters that an earlier failure left in the middle of a text, charsets
// without tables. Then nothing was written.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "charset/charset_handle.h"
#include "core/c_string.h"

namespace i18n {

// The converted text and its length, with a NUL behind it, in a buffer of so many bytes for each
// UTF-16 unit of the text, which are four at least, and one byte.
CString convert_directly(const i18n_charset_t& from, std::string_view input,
                         const i18n_charset_t& to, size_t bytes_per_unit, size_t* length);

// The length of the text in the buffer, in which nothing behind it is touched.
std::optional<size_t> convert_directly(const i18n_charset_t& from, std::string_view input,
                                       const i18n_charset_t& to, char* output, size_t capacity);

}  // namespace i18n
