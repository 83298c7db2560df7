#include "transfer/base64.h"

#include <algorithm>

namespace transfer {

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char pad = '=';

char* put_group(char* out, unsigned b0, unsigned b1, unsigned b2) {
  out[0] = alphabet[b0 >> 2];
  out[1] = alphabet[(b0 & 3) << 4 | b1 >> 4];
  out[2] = alphabet[(b1 & 15) << 2 | b2 >> 6];
  out[3] = alphabet[b2 & 63];
  return out + group_chars;
}

}  // namespace

char* put_base64(char* out, const unsigned char* bytes, size_t size) {
  for (; size >= group_bytes; size -= group_bytes, bytes += group_bytes) {
    out = put_group(out, bytes[0], bytes[1], bytes[2]);
  }
  if (size == 0) return out;
  out = put_group(out, bytes[0], size > 1 ? bytes[1] : 0, 0);
  if (size == 1) out[-2] = pad;
  out[-1] = pad;
  return out;
}

char* put_base64_lines(char* out, const unsigned char* bytes, size_t size, size_t line_chars) {
  const size_t line_bytes = line_chars / group_chars * group_bytes;
  for (; size > line_bytes; size -= line_bytes, bytes += line_bytes) {
    out = put_base64(out, bytes, line_bytes);
    *out++ = '\r';
    *out++ = '\n';
  }
  return put_base64(out, bytes, size);
}

}  // namespace transfer
