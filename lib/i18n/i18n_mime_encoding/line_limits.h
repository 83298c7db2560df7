// How long lines of mail are at most, and what stands between two of them. Lengths are in bytes.
#pragma once

namespace i18n_mime {

constexpr int max_base64_line = 76;
constexpr int max_quoted_printable_line = 76;  // the mark at its end included
constexpr const char* body_line_break = "\r\n";
constexpr const char* soft_break_mark = "=";  // ends a quoted-printable line that goes on

constexpr int max_word_line = 75;
constexpr const char* word_line_break = "\r\n\t";
constexpr const char* word_end = "?=";

}  // namespace i18n_mime
