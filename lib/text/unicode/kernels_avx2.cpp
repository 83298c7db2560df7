#include "text/unicode/kernels_avx2.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "text/unicode/utf8.h"
#include "transfer/avx2.h"

namespace text {

namespace {

using transfer::load_16;
using transfer::load_32;
using transfer::store_16;
using transfer::store_32;

constexpr size_t stretch = 32;

AVX2 std::uint32_t to_bits(__m256i bytes) {
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(bytes));
}

AVX2 std::uint32_t find_high(__m256i bytes) { return to_bits(bytes); }

AVX2 std::uint32_t find_continuations(__m256i bytes) {
  return to_bits(_mm256_cmpgt_epi8(_mm256_set1_epi8(-64), bytes));
}

AVX2 size_t count_bits(std::uint32_t bits) { return static_cast<size_t>(std::popcount(bits)); }

// Bytes moved together: those of eight elements that a bit is set for. An element has one byte or
// two; where half_kept, it keeps its first byte where no bit is set.
using Shuffle = std::array<std::uint8_t, 16>;

constexpr std::array<Shuffle, 256> make_shuffles(int element_size, bool half_kept) {
  std::array<Shuffle, 256> shuffles{};
  for (unsigned bits = 0; bits < shuffles.size(); ++bits) {
    auto to = shuffles[bits].begin();
    for (int element = 0; element < 8; ++element) {
      const bool kept = (bits >> element & 1) != 0;
      const auto first = static_cast<std::uint8_t>(element * element_size);
      if (kept || half_kept) *to++ = first;
      if (kept && element_size == 2) *to++ = static_cast<std::uint8_t>(first + 1);
    }
  }
  return shuffles;
}
constexpr std::array<Shuffle, 256> kept_bytes = make_shuffles(1, false);
constexpr std::array<Shuffle, 256> kept_units = make_shuffles(2, false);
constexpr std::array<Shuffle, 256> kept_halves = make_shuffles(2, true);

AVX2 __m128i move_together(__m128i bytes, const Shuffle& shuffle) {
  return _mm_shuffle_epi8(bytes, load_16(shuffle.data()));
}

// What lies before each byte: the bytes `distance` places before it.
template <int distance>
AVX2 __m256i look_back(__m256i bytes, __m256i before) {
  return _mm256_alignr_epi8(bytes, _mm256_permute2x128_si256(before, bytes, 0x21), 16 - distance);
}

AVX2 __m256i look_up(__m128i table, __m256i indices) {
  return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(table), indices);
}

AVX2 __m256i high_nibbles(__m256i bytes) {
  return _mm256_and_si256(_mm256_srli_epi16(bytes, 4), _mm256_set1_epi8(15));
}

// The errors that bytes end: the method of Keiser and Lemire, "Validating UTF-8 In Less Than One
// Instruction Per Byte". Each kind of error in two bytes has a bit, set in the entries of three
// tables for what the first byte, its low nibble and the second byte say; it is one where all
// agree.
enum Error : std::int8_t {
  kTooShort = 1,       // a lead, and no continuation
  kTooLong = 2,        // a continuation after ASCII
  kLongForm3 = 4,      // e0 80
  kSurrogate = 16,     // ed a0
  kLongForm2 = 32,     // c0 80
  kTooLarge1000 = 64,  // f5 80
  kLongForm4 = 64,     // f0 80
  kTwoContinuations = -128,
  kTooLarge = 8,                                     // f4 90
  kCarry = kTooShort | kTooLong | kTwoContinuations  // whatever the low nibble
};

AVX2 __m256i find_errors(__m256i bytes, __m256i before) {
  const __m256i first = look_back<1>(bytes, before);
  const __m128i by_high_nibble =
      _mm_setr_epi8(kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTooLong,
                    kTwoContinuations, kTwoContinuations, kTwoContinuations, kTwoContinuations,
                    kTooShort | kLongForm2, kTooShort, kTooShort | kLongForm3 | kSurrogate,
                    kTooShort | kTooLarge | kTooLarge1000 | kLongForm4);
  constexpr std::int8_t beyond = kCarry | kTooLarge | kTooLarge1000;
  const __m128i by_low_nibble =
      _mm_setr_epi8(kCarry | kLongForm3 | kLongForm2 | kLongForm4, kCarry | kLongForm2, kCarry,
                    kCarry, kCarry | kTooLarge, beyond, beyond, beyond, beyond, beyond, beyond,
                    beyond, beyond, beyond | kSurrogate, beyond, beyond);
  constexpr std::int8_t continued = kTooLong | kLongForm2 | kTwoContinuations;
  const __m128i by_second =
      _mm_setr_epi8(kTooShort, kTooShort, kTooShort, kTooShort, kTooShort, kTooShort, kTooShort,
                    kTooShort, continued | kLongForm3 | kTooLarge1000 | kLongForm4,
                    continued | kLongForm3 | kTooLarge, continued | kSurrogate | kTooLarge,
                    continued | kSurrogate | kTooLarge, kTooShort, kTooShort, kTooShort, kTooShort);
  const __m256i low_nibbles = _mm256_and_si256(first, _mm256_set1_epi8(15));
  const __m256i errors =
      _mm256_and_si256(_mm256_and_si256(look_up(by_high_nibble, high_nibbles(first)),
                                        look_up(by_low_nibble, low_nibbles)),
                       look_up(by_second, high_nibbles(bytes)));
  // Two continuations in a row are right where a lead of three or four bytes is before them.
  const __m256i third =
      _mm256_subs_epu8(look_back<2>(bytes, before), _mm256_set1_epi8(0xe0 - 0x80));
  const __m256i fourth =
      _mm256_subs_epu8(look_back<3>(bytes, before), _mm256_set1_epi8(0xf0 - 0x80));
  const __m256i expected =
      _mm256_and_si256(_mm256_or_si256(third, fourth), _mm256_set1_epi8(kTwoContinuations));
  return _mm256_xor_si256(errors, expected);
}

// The beginning of a character that an index lies in or right behind.
size_t begin_character(Bytes text, size_t index) {
  while (index != 0 && continues_character(text[index - 1])) --index;
  return index != 0 && text[index - 1] >= 0xc0 ? index - 1 : index;
}

}  // namespace

AVX2 size_t skip_ascii_avx2(Bytes text) {
  size_t done = 0;
  for (; text.size() - done >= stretch; done += stretch) {
    const std::uint32_t high = find_high(load_32(text.data() + done));
    if (high != 0) return done + static_cast<size_t>(std::countr_zero(high));
  }
  return done;
}

AVX2 size_t skip_utf8_avx2(Bytes text) {
  __m256i before = _mm256_setzero_si256();
  size_t done = 0;
  for (; text.size() - done >= stretch; done += stretch) {
    const __m256i bytes = load_32(text.data() + done);
    if (find_high(_mm256_or_si256(bytes, before)) != 0) {
      const __m256i errors = find_errors(bytes, before);
      if (_mm256_testz_si256(errors, errors) == 0) break;
    }
    before = bytes;
  }
  return begin_character(text, done);
}

AVX2 size_t copy_run_avx2(unsigned char* out, Bytes text, const AsciiSet& set) {
  const __m128i eights = load_16(set.bits);
  const __m128i powers = _mm_set1_epi64x(static_cast<long long>(0x8040201008040201));
  size_t done = 0;
  for (; text.size() - done >= stretch; done += stretch) {
    const __m256i bytes = load_32(text.data() + done);
    const __m256i eighth = _mm256_and_si256(_mm256_srli_epi16(bytes, 3), _mm256_set1_epi8(15));
    const __m256i bit = look_up(powers, _mm256_and_si256(bytes, _mm256_set1_epi8(7)));
    const __m256i is_in = _mm256_cmpeq_epi8(_mm256_and_si256(look_up(eights, eighth), bit), bit);
    const std::uint32_t others = ~to_bits(is_in) | find_high(bytes);
    if (others != 0) {
      const auto more = static_cast<size_t>(std::countr_zero(others));
      std::memcpy(out + done, text.data() + done, more);
      return done + more;
    }
    store_32(out + done, bytes);
  }
  return done;
}

// Every byte is taken for the first of a character, and what that would be is kept where it is. So
// nothing depends on how long the characters before it were.
AVX2 size_t utf8_to_units_avx2(char16_t*& out, Bytes text) {
  constexpr size_t step = 16;
  constexpr size_t ahead = 2;  // bytes of a character that begins with the last of the step
  const __m256i six_bits = _mm256_set1_epi16(0x3f);
  size_t done = 0;
  for (; text.size() - done >= step + ahead; done += step) {
    const unsigned char* const at = text.data() + done;
    const __m128i bytes = load_16(at);
    const __m256i first = _mm256_cvtepu8_epi16(bytes);
    if (_mm256_movemask_epi8(_mm256_cmpgt_epi16(first, _mm256_set1_epi16(0xef))) != 0) break;
    const __m256i second = _mm256_and_si256(_mm256_cvtepu8_epi16(load_16(at + 1)), six_bits);
    const __m256i third = _mm256_and_si256(_mm256_cvtepu8_epi16(load_16(at + 2)), six_bits);
    const __m256i of_two = _mm256_or_si256(
        _mm256_slli_epi16(_mm256_and_si256(first, _mm256_set1_epi16(0x1f)), 6), second);
    const __m256i of_three = _mm256_or_si256(
        _mm256_or_si256(_mm256_slli_epi16(first, 12), _mm256_slli_epi16(second, 6)), third);
    __m256i units =
        _mm256_blendv_epi8(first, of_two, _mm256_cmpgt_epi16(first, _mm256_set1_epi16(0xbf)));
    units = _mm256_blendv_epi8(units, of_three, _mm256_cmpgt_epi16(first, _mm256_set1_epi16(0xdf)));
    const auto starts =
        static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpgt_epi8(bytes, _mm_set1_epi8(-65))));
    store_16(out, move_together(_mm256_castsi256_si128(units), kept_units[starts & 255]));
    out += std::popcount(starts & 255);
    store_16(out, move_together(_mm256_extracti128_si256(units, 1), kept_units[starts >> 8]));
    out += std::popcount(starts >> 8);
  }
  while (done != 0 && done < text.size() && continues_character(text[done])) ++done;
  return done;
}

// The second byte of each character gives the result, and takes a bit from the first.
AVX2 size_t utf8_to_latin1_avx2(unsigned char*& out, Bytes text) {
  size_t done = 0;
  while (text.size() - done >= stretch) {
    const __m256i bytes = load_32(text.data() + done);
    if (find_high(bytes) == 0) {
      store_32(out, bytes);
      out += stretch;
      done += stretch;
      continue;
    }
    const __m256i c3 = _mm256_cmpeq_epi8(bytes, _mm256_set1_epi8(static_cast<char>(0xc3)));
    const std::uint32_t leads = to_bits(
        _mm256_or_si256(c3, _mm256_cmpeq_epi8(bytes, _mm256_set1_epi8(static_cast<char>(0xc2)))));
    const std::uint32_t continuations = find_continuations(bytes);
    if (continuations != leads << 1 || (leads | continuations) != find_high(bytes)) break;
    const __m256i raised =
        _mm256_and_si256(look_back<1>(c3, _mm256_setzero_si256()), _mm256_set1_epi8(0x40));
    const __m256i values = _mm256_add_epi8(bytes, raised);
    for (unsigned half = 0; half < 2; ++half) {
      const __m128i part =
          half == 0 ? _mm256_castsi256_si128(values) : _mm256_extracti128_si256(values, 1);
      const std::uint32_t kept = ~leads >> 16 * half;
      store_16(out, move_together(part, kept_bytes[kept & 255]));
      out += std::popcount(kept & 255);
      store_16(out, move_together(_mm_srli_si128(part, 8), kept_bytes[kept >> 8 & 255]));
      out += std::popcount(kept >> 8 & 255);
    }
    done += stretch;
    // A lead at the end is looked at again.
    if (leads >> (stretch - 1) != 0) --done;
  }
  return done;
}

AVX2 size_t latin1_to_utf8_avx2(unsigned char*& out, Bytes text) {
  constexpr size_t step = 16;
  size_t done = 0;
  for (; text.size() - done >= step; done += step) {
    const __m128i bytes = load_16(text.data() + done);
    const auto high = static_cast<unsigned>(_mm_movemask_epi8(bytes));
    if (high == 0) {
      store_16(out, bytes);
      out += step;
      continue;
    }
    const __m256i values = _mm256_cvtepu8_epi16(bytes);
    const __m256i leads = _mm256_or_si256(_mm256_srli_epi16(values, 6),
                                          _mm256_set1_epi16(static_cast<short>(0x80c0)));
    const __m256i lasts = _mm256_slli_epi16(_mm256_and_si256(values, _mm256_set1_epi16(0x3f)), 8);
    const __m256i is_high = _mm256_cmpgt_epi16(values, _mm256_set1_epi16(0x7f));
    const __m256i pairs = _mm256_blendv_epi8(values, _mm256_or_si256(leads, lasts), is_high);
    store_16(out, move_together(_mm256_castsi256_si128(pairs), kept_halves[high & 255]));
    out += 8 + std::popcount(high & 255);
    store_16(out, move_together(_mm256_extracti128_si256(pairs, 1), kept_halves[high >> 8]));
    out += 8 + std::popcount(high >> 8);
  }
  return done;
}

AVX2 size_t count_units_avx2(size_t& count, Bytes utf8) {
  size_t done = 0;
  for (; utf8.size() - done >= stretch; done += stretch) {
    const __m256i bytes = load_32(utf8.data() + done);
    const __m256i raised = _mm256_max_epu8(bytes, _mm256_set1_epi8(static_cast<char>(0xf0)));
    count += stretch - count_bits(find_continuations(bytes)) +
             count_bits(to_bits(_mm256_cmpeq_epi8(bytes, raised)));  // two units for each of those
  }
  return done;
}

AVX2 size_t count_high_avx2(size_t& count, Bytes text) {
  size_t done = 0;
  for (; text.size() - done >= stretch; done += stretch) {
    count += count_bits(find_high(load_32(text.data() + done)));
  }
  return done;
}

}  // namespace text
