#include "conversion/trivial_iter.h"

#include <algorithm>
#include <utility>

namespace i18n {

TrivialIter::TrivialIter(int max_chunk_bytes)
    : max_chunk(max_chunk_bytes), chunk_max(0), limit(0), cursor(nullptr) {}

TrivialIter::~TrivialIter() = default;

void TrivialIter::set_in_str(std::string&& input) {
  in_str = std::move(input);
  cursor = in_str.data();
  chunk_max = limit =
      static_cast<std::int32_t>(std::min<std::ptrdiff_t>(get_bytes_left(), max_chunk));
}

void TrivialIter::set_limit_byte_size(int n) {
  if (0 < n && n < chunk_max) limit = n;
}

void TrivialIter::next_chunk() {
  const std::ptrdiff_t size = std::min<std::ptrdiff_t>(limit, get_bytes_left());
  chunk.assign(cursor, static_cast<size_t>(size));
  cursor += size;
}

bool TrivialIter::has_next_chunk() { return get_bytes_left() > 0; }

CharIter<char> TrivialIter::get_char_iter() {
  static const StrWithOffsets<char> nothing;
  return CharIter<char>(nothing);
}

std::ptrdiff_t TrivialIter::get_bytes_left() const {
  return cursor == nullptr ? 0 : in_str.data() + in_str.size() - cursor;
}

}  // namespace i18n
