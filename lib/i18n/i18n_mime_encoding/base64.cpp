#include "i18n_mime_encoding/base64.h"

namespace i18n_mime {

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

void put_group(char* out, unsigned b0, unsigned b1, unsigned b2) {
  out[0] = alphabet[b0 >> 2];
  out[1] = alphabet[(b0 & 3) << 4 | b1 >> 4];
  out[2] = alphabet[(b1 & 15) << 2 | b2 >> 6];
  out[3] = alphabet[b2 & 63];
}

}  // namespace

void put_base64_groups_plain(char* out, const unsigned char* bytes, size_t count) {
  for (; count != 0; --count, bytes += group_bytes, out += group_chars) {
    put_group(out, bytes[0], bytes[1], bytes[2]);
  }
}

void put_base64_groups(char* out, const unsigned char* bytes, size_t count) {
  if (!put_base64_groups_vector(out, bytes, count)) put_base64_groups_plain(out, bytes, count);
}

void put_base64_rest(char* out, const unsigned char* bytes, size_t size) {
  put_group(out, bytes[0], size > 1 ? bytes[1] : 0, 0);
  if (size < 2) out[2] = '=';
  out[3] = '=';
}

}  // namespace i18n_mime
