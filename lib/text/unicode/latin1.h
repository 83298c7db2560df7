// ISO-8859-1 and UTF-8, each from the other.
#pragma once

#include <cstddef>

#include "text/bytes.h"
#include "text/unicode/kernels.h"

namespace text {

// Each writes the converted text and returns its end, or null when the text is not well-formed or
// the target lacks a character. The room must be that of the largest result and copy_slack: at most
// one byte for one to ISO-8859-1, two for one from there.
constexpr size_t copy_slack = kernel_slack;
unsigned char* utf8_to_latin1(unsigned char* out, Bytes text,
                              const Kernels& kernels = get_kernels());
unsigned char* latin1_to_utf8(unsigned char* out, Bytes text,
                              const Kernels& kernels = get_kernels());

// The size of the result; the other way round, it is that of the text in UTF-16.
size_t get_utf8_size(Bytes latin1, const Kernels& kernels = get_kernels());

}  // namespace text
