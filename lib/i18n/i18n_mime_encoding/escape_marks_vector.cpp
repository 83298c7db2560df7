// Escape marks of 32 bytes at once, on processors with AVX2.
#include "i18n_mime_encoding/cpu_features.h"
#include "i18n_mime_encoding/escape_marks.h"

#if defined(__x86_64__) && defined(__GNUC__)

#include <immintrin.h>

namespace i18n_mime {

namespace {

__attribute__((target("avx2"))) std::uint32_t to_bits(__m256i bytes) {
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(bytes));
}

// A bit for each byte value, eight values in a byte, those below 0x80 and the others apart.
struct ByteSet {
  __m256i low;
  __m256i high;
};

__attribute__((target("avx2"))) ByteSet make_escape_set(const char* table) {
  alignas(16) std::uint32_t bits[8];
  for (int i = 0; i < 8; ++i) {
    const __m256i entries = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(table) + i);
    bits[i] = to_bits(_mm256_cmpeq_epi8(entries, _mm256_set1_epi8(1)));
  }
  const auto* halves = reinterpret_cast<const __m128i*>(bits);
  return {_mm256_broadcastsi128_si256(_mm_load_si128(halves)),
          _mm256_broadcastsi128_si256(_mm_load_si128(halves + 1))};
}

__attribute__((target("avx2"))) std::uint32_t find(const ByteSet& set, __m256i bytes) {
  const __m256i powers = _mm256_set1_epi64x(static_cast<long long>(0x8040201008040201));
  const __m256i eighth = _mm256_and_si256(_mm256_srli_epi16(bytes, 3), _mm256_set1_epi8(15));
  const __m256i eight = _mm256_blendv_epi8(_mm256_shuffle_epi8(set.low, eighth),
                                           _mm256_shuffle_epi8(set.high, eighth), bytes);
  const __m256i bit = _mm256_shuffle_epi8(powers, _mm256_and_si256(bytes, _mm256_set1_epi8(7)));
  return to_bits(_mm256_cmpeq_epi8(_mm256_and_si256(eight, bit), bit));
}

__attribute__((target("avx2"))) std::ptrdiff_t mark(std::uint32_t* marks, const char* table,
                                                    const unsigned char* bytes,
                                                    std::ptrdiff_t count) {
  const ByteSet set = make_escape_set(table);
  std::ptrdiff_t done = 0;
  for (; count - done >= EscapeMarks::stretch; done += EscapeMarks::stretch) {
    *marks++ = find(set, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes + done)));
  }
  return done;
}

}  // namespace

std::ptrdiff_t mark_escapes_vector(std::uint32_t* marks, const char* table,
                                   const unsigned char* bytes, std::ptrdiff_t count) {
  return has_avx2() ? mark(marks, table, bytes, count) : 0;
}

}  // namespace i18n_mime

#else

namespace i18n_mime {

std::ptrdiff_t mark_escapes_vector(std::uint32_t*, const char*, const unsigned char*,
                                   std::ptrdiff_t) {
  return 0;
}

}  // namespace i18n_mime

#endif
