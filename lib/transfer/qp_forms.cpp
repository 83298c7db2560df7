#include "transfer/qp_forms.h"

namespace transfer {

namespace {

constexpr char digits[] = "0123456789ABCDEF";

}  // namespace

size_t count_escapes(const char* table, const unsigned char* bytes, size_t size) {
  size_t count = 0;
  for (size_t i = 0; i < size; ++i) count += is_escaped(table, bytes[i]);
  return count;
}

char* put_forms(char* out, const char* table, const unsigned char* bytes, size_t size) {
  for (size_t i = 0; i < size; ++i) {
    const unsigned char byte = bytes[i];
    if (is_escaped(table, byte)) {
      *out++ = '=';
      *out++ = digits[byte >> 4];
      *out++ = digits[byte & 15];
    } else {
      *out++ = static_cast<char>(byte);
    }
  }
  return out;
}

}  // namespace transfer
