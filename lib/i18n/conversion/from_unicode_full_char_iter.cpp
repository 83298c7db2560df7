#include "conversion/from_unicode_full_char_iter.h"

#include <algorithm>

#include "core/offsets.h"

namespace i18n {

FromUnicodeFullCharIter::~FromUnicodeFullCharIter() = default;

void FromUnicodeFullCharIter::next_chunk() {
  std::copy(carry.begin(), carry.end(), target_buffer.get());
  clear_offsets(offsets_buffer.get(), carry.size());
  convert_after(static_cast<std::int32_t>(carry.size()));

  const std::int32_t produced = get_produced();
  const std::int32_t delivered = has_next_chunk() ? find_cut(produced) : produced;
  carry.assign(target_buffer.get() + delivered, target_buffer.get() + produced);
  make_chunk(delivered);
}

// Where the run of equal offsets that ends the produced bytes begins, the first byte aside.
std::int32_t FromUnicodeFullCharIter::find_cut(std::int32_t produced) const {
  if (produced == 0) return 0;
  const std::int32_t* offsets = offsets_buffer.get();
  std::int32_t last_before = produced - 1;
  while (last_before > 0 && offsets[last_before] == offsets[produced - 1]) --last_before;
  return last_before + 1;
}

}  // namespace i18n
