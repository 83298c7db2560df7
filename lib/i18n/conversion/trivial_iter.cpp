#include "conversion/trivial_iter.h"

#include <algorithm>

namespace i18n {

TrivialIter::TrivialIter(int max_chunk_bytes)
    : max_chunk(max_chunk_bytes), chunk_max(0), limit(0) {}

TrivialIter::~TrivialIter() = default;

void TrivialIter::borrow_in_str(std::string_view input) {
  rest_ = input;
  chunk_max = limit =
      static_cast<std::int32_t>(std::min(rest_.size(), static_cast<size_t>(max_chunk)));
}

void TrivialIter::set_limit_byte_size(int n) {
  if (0 < n && n < chunk_max) limit = n;
}

void TrivialIter::next_chunk() {
  chunk = rest_.substr(0, static_cast<size_t>(limit));
  rest_.remove_prefix(chunk.size());
}

bool TrivialIter::has_next_chunk() { return !rest_.empty(); }

CharIter<char> TrivialIter::get_char_iter() { return CharIter<char>({}); }

}  // namespace i18n
