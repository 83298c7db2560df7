// Whole texts between UTF-8 and ISO-8859-1, which need no ICU as long as all goes well.
#pragma once

#include <cstddef>
#include <string_view>

#include "charset/charset.h"
#include "core/c_string.h"

namespace i18n {

// The converted text, NUL-terminated, in a new buffer of bytes_per_unit bytes, four or more, for
// each UTF-16 unit of the text, and one byte. Null when this is for ICU: other charsets, text that
// is invalid or that the target lacks, a text of less than four units, a converter that an earlier
// failure left in the middle of a text, or a buffer of 2 GiB and more.
CString convert_directly(const i18n_charset_t& from, std::string_view input,
                         const i18n_charset_t& to, size_t bytes_per_unit, size_t* length);

}  // namespace i18n
