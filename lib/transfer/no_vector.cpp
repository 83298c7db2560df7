// Stands in for the vector code in builds that have none.
#include "transfer/vector.h"

namespace transfer {

bool has_avx2() { return false; }

size_t put_base64_avx2(char*, const unsigned char*, size_t) { return 0; }
size_t put_base64_lines_avx2(char*, const unsigned char*, size_t, size_t) { return 0; }
size_t count_escapes_avx2(const char*, const unsigned char*, size_t, size_t&) { return 0; }
size_t put_forms_avx2(char*&, const char*, const unsigned char*, size_t) { return 0; }

}  // namespace transfer
