// Forms of quoted-printable 32 bytes at once, with AVX2.
#include <array>
#include <bit>
#include <cstdint>

#include "transfer/avx2.h"
#include "transfer/qp_forms.h"
#include "transfer/vector.h"

namespace transfer {

namespace {

constexpr size_t stretch = vector_stretch;

// A bit for each byte value, eight values in a byte, those below 0x80 and the others apart.
struct ByteSet {
  __m256i low;
  __m256i high;
};

AVX2 std::uint32_t to_bits(__m256i bytes) {
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(bytes));
}

AVX2 ByteSet make_escape_set(const char* table) {
  alignas(16) std::uint32_t bits[8];
  for (size_t i = 0; i < 8; ++i) {
    const __m256i entries = load_32(table + i * stretch);
    bits[i] = to_bits(_mm256_cmpeq_epi8(entries, _mm256_set1_epi8(1)));
  }
  return {_mm256_broadcastsi128_si256(load_16(bits)),
          _mm256_broadcastsi128_si256(load_16(bits + 4))};
}

// A bit for each of 32 bytes that is in the set.
AVX2 std::uint32_t find(const ByteSet& set, __m256i bytes) {
  const __m256i powers = _mm256_set1_epi64x(static_cast<long long>(0x8040201008040201));
  const __m256i eighth = _mm256_and_si256(_mm256_srli_epi16(bytes, 3), _mm256_set1_epi8(15));
  const __m256i eight = _mm256_blendv_epi8(_mm256_shuffle_epi8(set.low, eighth),
                                           _mm256_shuffle_epi8(set.high, eighth), bytes);
  const __m256i bit = _mm256_shuffle_epi8(powers, _mm256_and_si256(bytes, _mm256_set1_epi8(7)));
  return to_bits(_mm256_cmpeq_epi8(_mm256_and_si256(eight, bit), bit));
}

// The forms of four bytes come from one shuffle of their sixteen possible characters: the bytes
// themselves, their first digits, their second digits, and four times "=". A shuffle for each
// pattern of escapes among the four bytes, lowest bit first.
using Shuffle = std::array<std::uint8_t, 16>;

constexpr std::array<Shuffle, 16> make_shuffles() {
  std::array<Shuffle, 16> shuffles{};
  for (size_t escapes = 0; escapes < shuffles.size(); ++escapes) {
    auto to = shuffles[escapes].begin();
    for (std::uint8_t i = 0; i < 4; ++i) {
      const bool escaped = (escapes >> i & 1) != 0;
      const std::uint8_t literal = i, first_digit = i + 4, second_digit = i + 8, mark = i + 12;
      *to++ = escaped ? mark : literal;
      if (!escaped) continue;
      *to++ = first_digit;
      *to++ = second_digit;
    }
  }
  return shuffles;
}
constexpr std::array<Shuffle, 16> shuffles = make_shuffles();

AVX2 __m256i get_shuffle(unsigned low_escapes, unsigned high_escapes) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(load_16(shuffles[low_escapes].data())),
                                 load_16(shuffles[high_escapes].data()), 1);
}

// Both halves of 32 bytes at once, each by four groups of four.
AVX2 char* put_stretch(char* out, __m256i bytes, std::uint32_t escapes) {
  const __m256i all_digits = _mm256_broadcastsi128_si256(_mm_setr_epi8(
      '0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'A', 'B', 'C', 'D', 'E', 'F'));
  const __m256i nibble = _mm256_set1_epi8(15);
  const __m256i first =
      _mm256_shuffle_epi8(all_digits, _mm256_and_si256(_mm256_srli_epi16(bytes, 4), nibble));
  const __m256i second = _mm256_shuffle_epi8(all_digits, _mm256_and_si256(bytes, nibble));
  const __m256i marks = _mm256_set1_epi8('=');
  const __m256i low_front = _mm256_unpacklo_epi32(bytes, first);
  const __m256i low_back = _mm256_unpacklo_epi32(second, marks);
  const __m256i high_front = _mm256_unpackhi_epi32(bytes, first);
  const __m256i high_back = _mm256_unpackhi_epi32(second, marks);
  const __m256i groups[] = {
      _mm256_unpacklo_epi64(low_front, low_back), _mm256_unpackhi_epi64(low_front, low_back),
      _mm256_unpacklo_epi64(high_front, high_back), _mm256_unpackhi_epi64(high_front, high_back)};

  constexpr unsigned half = stretch / 2;
  const auto size_of = [](unsigned count, std::uint32_t marked) AVX2 {
    return count + (escape_size - 1) * static_cast<unsigned>(std::popcount(marked));
  };
  char* const second_out = out + size_of(half, escapes & 0xffff);
  const std::uint32_t later = escapes >> half;
  __m256i forms[4];
  for (unsigned i = 0; i < 4; ++i) {
    const __m256i shuffle = get_shuffle(escapes >> 4 * i & 15, later >> 4 * i & 15);
    forms[i] = _mm256_shuffle_epi8(groups[i], shuffle);
  }
  // Each store reaches over what comes after it, so they go from front to back.
  for (unsigned i = 0; i < 4; ++i) {
    const std::uint32_t before = (1u << 4 * i) - 1;
    store_16(out + size_of(4 * i, escapes & before), _mm256_castsi256_si128(forms[i]));
  }
  for (unsigned i = 0; i < 4; ++i) {
    const std::uint32_t before = (1u << 4 * i) - 1;
    store_16(second_out + size_of(4 * i, later & before), _mm256_extracti128_si256(forms[i], 1));
  }
  return second_out + size_of(half, later);
}

}  // namespace

AVX2 size_t count_escapes_avx2(const char* table, const unsigned char* bytes, size_t size,
                               size_t& count) {
  const ByteSet set = make_escape_set(table);
  size_t done = 0;
  for (; size - done >= stretch; done += stretch) {
    count += static_cast<size_t>(std::popcount(find(set, load_32(bytes + done))));
  }
  return done;
}

AVX2 size_t put_forms_avx2(char*& out, const char* table, const unsigned char* bytes, size_t size) {
  const ByteSet set = make_escape_set(table);
  size_t done = 0;
  for (; size - done >= stretch; done += stretch) {
    const __m256i text = load_32(bytes + done);
    const std::uint32_t escapes = find(set, text);
    if (escapes == 0) {
      store_32(out, text);
      out += stretch;
      continue;
    }
    out = put_stretch(out, text, escapes);
  }
  return done;
}

}  // namespace transfer
