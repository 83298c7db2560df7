// Vector code: as much of a job as the instructions are good for. Each function returns how many
// bytes of the input it did, from the beginning on; its caller does the rest one by one. A function
// may be called only where the has_...() of its instructions is true. Builds without vector code
// have has_...() that are false.
#pragma once

#include <cstddef>

namespace transfer {

bool has_avx2();

// All whole groups of three bytes, unless there are too few.
size_t put_base64_avx2(char* out, const unsigned char* bytes, size_t size);
// All whole lines, of 48 to 72 bytes, each with CR LF behind it.
size_t put_base64_lines_avx2(char* out, const unsigned char* bytes, size_t size, size_t line_bytes);

// Of less than this, the next two do nothing.
constexpr size_t vector_stretch = 32;

// Adds to count.
size_t count_escapes_avx2(const char* table, const unsigned char* bytes, size_t size,
                          size_t& count);
// Moves out. Overwrites up to form_slack beyond it.
size_t put_forms_avx2(char*& out, const char* table, const unsigned char* bytes, size_t size);

}  // namespace transfer
