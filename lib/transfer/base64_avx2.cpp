// Base64 of eight groups at once, with AVX2.
#include "transfer/avx2.h"
#include "transfer/base64.h"
#include "transfer/vector.h"

namespace transfer {

namespace {

constexpr size_t block_bytes = 8 * group_bytes;
constexpr size_t block_chars = 8 * group_chars;
// A block is loaded as two halves of sixteen bytes, of which twelve count. What lies beside them
// must be there to be read: behind the block, or before it.
constexpr size_t half_bytes = block_bytes / 2;
constexpr size_t beside = 4;

// Each 32-bit lane holds the bytes b1 b0 b2 b1 of a group, lowest first. Returns the group's four
// indices into the alphabet, a byte each.
AVX2 __m256i split_into_indices(__m256i groups) {
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
AVX2 __m256i to_characters(__m256i indices) {
  const __m256i distances = _mm256_broadcastsi128_si256(
      _mm_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                    '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0));
  const __m256i from_digits = _mm256_subs_epu8(indices, _mm256_set1_epi8(51));
  const __m256i is_upper = _mm256_cmpgt_epi8(_mm256_set1_epi8(26), indices);
  const __m256i run =
      _mm256_or_si256(from_digits, _mm256_and_si256(is_upper, _mm256_set1_epi8(13)));
  return _mm256_add_epi8(indices, _mm256_shuffle_epi8(distances, run));
}

// The halves' bytes begin at offset, 0 or `beside`, of what was loaded.
template <int offset>
AVX2 void put_halves(char* out, __m128i low, __m128i high) {
  const __m256i spread = _mm256_broadcastsi128_si256(_mm_add_epi8(
      _mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10), _mm_set1_epi8(offset)));
  const __m256i groups = _mm256_shuffle_epi8(_mm256_set_m128i(high, low), spread);
  store_32(out, to_characters(split_into_indices(groups)));
}

// Reads four bytes behind the block.
AVX2 void put_first_block(char* out, const unsigned char* bytes) {
  put_halves<0>(out, load_16(bytes), load_16(bytes + half_bytes));
}

// Reads four bytes before the block.
AVX2 void put_later_block(char* out, const unsigned char* bytes) {
  put_halves<beside>(out, load_16(bytes - beside), load_16(bytes + half_bytes - beside));
}

// The block that begins at index, a multiple of three, of a text.
AVX2 void put_later_block_at(size_t index, char* out, const unsigned char* bytes) {
  put_later_block(out + index / group_bytes * group_chars, bytes + index);
}

}  // namespace

// The last block lies partly over the one before it.
AVX2 size_t put_base64_avx2(char* out, const unsigned char* bytes, size_t size) {
  const size_t whole = size / group_bytes * group_bytes;
  if (whole < block_bytes + beside) return 0;
  const size_t last = whole - block_bytes;
  put_first_block(out, bytes);
  for (size_t at = block_bytes; at < last; at += block_bytes) put_later_block_at(at, out, bytes);
  put_later_block_at(last, out, bytes);
  return whole;
}

// A line is three blocks, of which the last lies partly over the second.
AVX2 size_t put_base64_lines_avx2(char* out, const unsigned char* bytes, size_t size,
                                  size_t line_bytes) {
  const size_t line_chars = line_bytes / group_bytes * group_chars;
  size_t done = 0;
  for (; size - done >= line_bytes; done += line_bytes) {
    const unsigned char* const line = bytes + done;
    put_first_block(out, line);
    put_later_block(out + block_chars, line + block_bytes);
    put_later_block(out + line_chars - block_chars, line + line_bytes - block_bytes);
    out = put_line_break(out + line_chars);
  }
  return done;
}

}  // namespace transfer
