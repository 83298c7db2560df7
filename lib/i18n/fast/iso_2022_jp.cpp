#include "fast/iso_2022_jp.h"

#include <algorithm>

namespace fast {

namespace {

unsigned char* put(unsigned char* out, std::string_view text) {
  return std::copy(text.begin(), text.end(), out);
}

// Whether a byte of Shift_JIS is the same character in ISO-2022-JP. Some control characters change
// places in the one, or change states in the other.
bool is_ascii(unsigned char byte) {
  return byte < 0x7f && byte != 0x1a && byte != 0x1b && byte != 0x1c && byte != 0x0e &&
         byte != 0x0f;
}

// Two rows of 94 cells share a lead byte. Those after 0xef are not in JIS X 0208.
bool is_lead(unsigned char byte) {
  return (0x81 <= byte && byte <= 0x9f) || (0xe0 <= byte && byte <= 0xef);
}

unsigned char* put_jis(unsigned char* out, unsigned lead, unsigned trail) {
  const unsigned rows = 2 * (lead - (lead < 0xa0 ? 0x81 : 0xc1)) + 0x21;
  const bool is_second = trail >= 0x9f;
  *out++ = static_cast<unsigned char>(rows + (is_second ? 1 : 0));
  *out++ = static_cast<unsigned char>(trail - (is_second ? 0x7e : trail > 0x7f ? 0x20 : 0x1f));
  return out;
}

}  // namespace

Bytes Iso2022JpPieces::next() {
  if (piece_.empty()) piece_ = shift_jis_.next();
  unsigned char* out = bytes_;
  if (!piece_.empty()) {
    out = write(out);
  } else if (is_in_jis_) {
    out = put(out, to_ascii);
    is_in_jis_ = false;
  }
  failed_ = failed_ || shift_jis_.has_failed();
  return failed_ ? Bytes() : Bytes(bytes_, out);
}

// As much of the piece as goes at once. It ends with a whole character.
unsigned char* Iso2022JpPieces::write(unsigned char* out) {
  size_t index = 0;
  for (; index < std::min(piece_.size(), most_at_once); ++index) {
    const unsigned char byte = piece_[index];
    const bool is_jis = is_lead(byte);
    failed_ = !is_jis && !is_ascii(byte);
    if (failed_) return out;
    if (is_jis != is_in_jis_) out = put(out, is_jis ? to_jis : to_ascii);
    is_in_jis_ = is_jis;
    if (is_jis) {
      out = put_jis(out, byte, piece_[++index]);
    } else {
      *out++ = byte;
    }
  }
  piece_ = piece_.subspan(index);
  return out;
}

}  // namespace fast
