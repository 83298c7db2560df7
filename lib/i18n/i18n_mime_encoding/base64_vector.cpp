// Base64 of eight groups at once, on processors with AVX2.
#include "i18n_mime_encoding/base64.h"
#include "i18n_mime_encoding/cpu_features.h"

#if defined(__x86_64__) && defined(__GNUC__)

#include <immintrin.h>

#include <algorithm>
#include <cstring>

namespace i18n_mime {

namespace {

constexpr size_t groups_at_once = 8;
constexpr size_t bytes_read = 28;  // four more than eight groups have

// Each 32-bit lane holds the bytes b1 b0 b2 b1 of a group, lowest first. Returns the group's four
// indices into the alphabet, a byte each.
__attribute__((target("avx2"))) __m256i split_into_indices(__m256i groups) {
  // The first and third index come down by a shift right, done as the high half of a
  // multiplication; the second and fourth go up by a shift left, the low half.
  const __m256i first_and_third = _mm256_and_si256(groups, _mm256_set1_epi32(0x0fc0fc00));
  const __m256i second_and_fourth = _mm256_and_si256(groups, _mm256_set1_epi32(0x003f03f0));
  return _mm256_or_si256(_mm256_mulhi_epu16(first_and_third, _mm256_set1_epi32(0x04000040)),
                         _mm256_mullo_epi16(second_and_fourth, _mm256_set1_epi32(0x01000010)));
}

// The alphabet has five runs of characters, each at a fixed distance from its indices. A run's
// number comes from the index: 0 for a to z, 1 to 10 for the digits, 11 and 12 for the last two
// characters, 13 for A to Z.
__attribute__((target("avx2"))) __m256i to_characters(__m256i indices) {
  const __m256i distances =
      _mm256_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                       '0' - 52, '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0,
                       'a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                       '0' - 52, '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0);
  const __m256i from_digits = _mm256_subs_epu8(indices, _mm256_set1_epi8(51));
  const __m256i is_upper = _mm256_cmpgt_epi8(_mm256_set1_epi8(26), indices);
  const __m256i run =
      _mm256_or_si256(from_digits, _mm256_and_si256(is_upper, _mm256_set1_epi8(13)));
  return _mm256_add_epi8(indices, _mm256_shuffle_epi8(distances, run));
}

// Reads bytes_read from bytes on.
__attribute__((target("avx2"))) void put_eight_groups(char* out, const unsigned char* bytes) {
  const __m256i spread = _mm256_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10, 1, 0,
                                          2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10);
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 12));
  const __m256i groups = _mm256_shuffle_epi8(_mm256_set_m128i(high, low), spread);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), to_characters(split_into_indices(groups)));
}

__attribute__((target("avx2"))) void put_groups(char* out, const unsigned char* bytes,
                                                size_t count) {
  for (; count * group_bytes >= bytes_read; count -= groups_at_once) {
    put_eight_groups(out, bytes);
    bytes += groups_at_once * group_bytes;
    out += groups_at_once * group_chars;
  }
  // Fewer than ten groups are left: from a copy that can be read to its end.
  while (count != 0) {
    const size_t groups = std::min(count, groups_at_once);
    unsigned char padded[bytes_read] = {};
    char chars[groups_at_once * group_chars];
    std::memcpy(padded, bytes, groups * group_bytes);
    put_eight_groups(chars, padded);
    std::memcpy(out, chars, groups * group_chars);
    bytes += groups * group_bytes;
    out += groups * group_chars;
    count -= groups;
  }
}

}  // namespace

bool put_base64_groups_vector(char* out, const unsigned char* bytes, size_t count) {
  if (!has_avx2()) return false;
  put_groups(out, bytes, count);
  return true;
}

}  // namespace i18n_mime

#else

namespace i18n_mime {

bool put_base64_groups_vector(char*, const unsigned char*, size_t) { return false; }

}  // namespace i18n_mime

#endif
