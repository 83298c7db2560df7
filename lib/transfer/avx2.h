// What the files with AVX2 code share. They are compiled like any other file, for any processor:
// only functions marked AVX2 use the instructions.
#pragma once

#include <immintrin.h>

#define AVX2 __attribute__((target("avx2,popcnt")))

namespace transfer {

AVX2 inline __m128i load_16(const void* at) {
  return _mm_loadu_si128(static_cast<const __m128i*>(at));
}
AVX2 inline __m256i load_32(const void* at) {
  return _mm256_loadu_si256(static_cast<const __m256i*>(at));
}
AVX2 inline void store_16(void* at, __m128i bytes) {
  _mm_storeu_si128(static_cast<__m128i*>(at), bytes);
}
AVX2 inline void store_32(void* at, __m256i bytes) {
  _mm256_storeu_si256(static_cast<__m256i*>(at), bytes);
}

}  // namespace transfer
