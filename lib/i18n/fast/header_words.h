// Header words.
#pragma once

#include <qorvii18n/i18n_mime.h>

#include "fast/header_text.h"
#include "fast/output.h"

namespace fast {

// Each writes the words of a text and returns false when it is not well-formed: what was written
// then means nothing. The charset name is written into the words as it is.
constexpr size_t longest_word_charset = 20;
bool put_b_words(const HeaderText& text, const char* charset, Output& output);
// The table must escape '=' and every byte that is not ASCII.
bool put_q_words(const HeaderText& text, const char* charset, const char* table, Output& output);

}  // namespace fast
