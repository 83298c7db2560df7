#include "transfer/base64.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "transfer/vector.h"

namespace transfer {

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char pad = '=';

// Two characters for each twelve bits: half the look-ups of one for each six.
using Pair = std::array<char, 2>;
constexpr std::array<Pair, 4096> make_pairs() {
  std::array<Pair, 4096> pairs{};
  for (size_t bits = 0; bits < pairs.size(); ++bits) {
    pairs[bits] = {alphabet[bits >> 6], alphabet[bits & 63]};
  }
  return pairs;
}
constexpr std::array<Pair, 4096> pairs = make_pairs();

char* put_pair(char* out, unsigned bits) {
  std::memcpy(out, pairs[bits].data(), sizeof(Pair));
  return out + sizeof(Pair);
}

char* put_group(char* out, unsigned b0, unsigned b1, unsigned b2) {
  out = put_pair(out, b0 << 4 | b1 >> 4);
  return put_pair(out, (b1 & 15) << 8 | b2);
}

}  // namespace

char* put_base64(char* out, const unsigned char* bytes, size_t size) {
  const bool is_worth_a_look = size > 8 * group_bytes;
  size_t done = is_worth_a_look && has_avx2() ? put_base64_avx2(out, bytes, size) : 0;
  out += done / group_bytes * group_chars;
  for (; size - done >= group_bytes; done += group_bytes) {
    out = put_group(out, bytes[done], bytes[done + 1], bytes[done + 2]);
  }
  if (done == size) return out;
  const bool has_two = size - done == 2;
  out = put_group(out, bytes[done], has_two ? bytes[done + 1] : 0, 0);
  if (!has_two) out[-2] = pad;
  out[-1] = pad;
  return out;
}

char* put_base64_lines(char* out, const unsigned char* bytes, size_t size, size_t line_chars) {
  const size_t line_bytes = line_chars / group_chars * group_bytes;
  // A whole line has a break behind it only where more follows.
  const size_t broken = size == 0 ? 0 : (size - 1) / line_bytes * line_bytes;
  size_t done = has_avx2() ? put_base64_lines_avx2(out, bytes, broken, line_bytes) : 0;
  out += base64_lines_size(done, line_chars) + (done == 0 ? 0 : line_break_size);
  for (; done != broken; done += line_bytes) {
    out = put_line_break(put_base64(out, bytes + done, line_bytes));
  }
  return put_base64(out, bytes + done, size - done);
}

}  // namespace transfer
