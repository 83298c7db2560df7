// Kernels with AVX2.
#pragma once

#include "text/bytes.h"
#include "text/unicode/ascii_set.h"

namespace text {

size_t skip_ascii_avx2(Bytes text);
size_t skip_utf8_avx2(Bytes text);
size_t copy_run_avx2(unsigned char* out, Bytes text, const AsciiSet& set);
size_t utf8_to_units_avx2(char16_t*& out, Bytes text);
size_t utf8_to_latin1_avx2(unsigned char*& out, Bytes text);
size_t latin1_to_utf8_avx2(unsigned char*& out, Bytes text);
size_t count_units_avx2(size_t& count, Bytes utf8);
size_t count_high_avx2(size_t& count, Bytes text);

}  // namespace text
