// Header words of text that is UTF-8 before and after.
#pragma once

#include <qorvii18n/i18n_mime.h>

#include "core/bytes.h"
#include "fast/output.h"

namespace fast {

using i18n::Bytes;

// Each writes the words of a text and returns false when it is not UTF-8: what was written then
// means nothing. The charset name, a spelling of UTF-8, is written into the words as it is.
bool put_b_words(Bytes text, const char* charset, Output& output);
// The table must escape '=' and every byte that is not ASCII.
bool put_q_words(Bytes text, const char* charset, const char* table, Output& output);

}  // namespace fast
