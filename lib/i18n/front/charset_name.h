// Names under which charsets are looked up.
#pragma once

#include "core/c_string.h"

// ASCII letters in lower case, hyphens left out, everything else as it is.
i18n::CString normalise_charset_name(const char* name);
