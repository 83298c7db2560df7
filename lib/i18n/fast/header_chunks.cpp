#include "fast/header_chunks.h"
#include "text/unicode/utf8.h"

#include <algorithm>

namespace fast {

bool HeaderChunks::next() {
  if (!room_was_full && !fetch()) return false;
  chunk_begin = delivered;
  write();
  return true;
}

bool HeaderChunks::fetch() {
  constexpr size_t pair_size = 4;
  begins_in_pair = splits_pair;
  if (begins_in_pair) fetched += pair_size;
  const size_t units = begins_in_pair ? units_at_once - 1 : units_at_once;
  const Bytes rest = text.subspan(fetched);
  const text::Reach reach = text::reach_units(rest, units);
  if (!reach.is_valid) return false;
  // A pair of which one unit has room is the only thing that leaves room beside more text.
  splits_pair = reach.units != units && reach.bytes != rest.size();
  fetched += reach.bytes;
  is_last_fetch = fetched == text.size();
  return true;
}

void HeaderChunks::write() {
  constexpr size_t pair_size = 4;
  const size_t limit = delivered + room;
  // What the converter took before this call has no position for it.
  const size_t run_end = begins_in_pair ? taken + pair_size : taken;
  begins_in_pair = false;
  // When the room is full to the last byte, the converter does not get to the half of a pair.
  room_was_full = fetched > limit || (fetched == limit && splits_pair);
  const size_t written = std::min(fetched, limit);
  taken = end_character(written);

  size_t end = written;
  if (has_next() && written != delivered) {
    const bool is_one_run = written <= run_end;
    const size_t held_back = is_one_run ? delivered : find_character(written - 1);
    end = std::max(held_back, delivered + 1);  // one byte at least, or it would stall
  }
  first_run = std::min(run_end, end) - delivered;
  delivered = end;
}

size_t HeaderChunks::find_character(size_t at) const {
  while (text::continues_character(text[at])) --at;
  return at;
}

// What comes after the bytes fetched has not been looked at.
size_t HeaderChunks::end_character(size_t at) const {
  while (at != fetched && text::continues_character(text[at])) ++at;
  return at;
}

}  // namespace fast
