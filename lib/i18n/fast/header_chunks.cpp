#include "fast/header_chunks.h"

#include <algorithm>

namespace fast {

bool HeaderChunks::next() {
  if (!room_was_full_ && !fetch()) return false;
  chunk_begin_ = delivered_;
  write();
  return true;
}

bool HeaderChunks::fetch() {
  begins_in_pair_ = splits_pair_;
  if (begins_in_pair_) {
    fetched_ = text_.end_character(fetched_);
    vanished_ = 0;
  }
  const size_t units = begins_in_pair_ ? units_at_once - 1 : units_at_once;
  const size_t size = text_.get().size();
  const text::Reach reach = text_.reach_units(fetched_, units, vanished_);
  if (!reach.is_valid) return false;
  // A pair of which one unit has room is the only thing that leaves room beside more text.
  splits_pair_ = reach.units != units && reach.bytes != size - fetched_;
  fetched_ += reach.bytes;
  is_last_fetch_ = fetched_ == size;
  return true;
}

void HeaderChunks::write() {
  const size_t limit = delivered_ + room_;
  // What the converter took before this call has no position for it.
  const size_t run_end = begins_in_pair_ ? text_.end_character(taken_) : taken_;
  begins_in_pair_ = false;
  // When the room is full to the last byte, the converter does not get to the half of a pair, or to
  // what vanishes.
  room_was_full_ = fetched_ > limit || (fetched_ == limit && (splits_pair_ || vanished_ != 0));
  const size_t written = std::min(fetched_, limit);
  taken_ = end_character(written);

  size_t end = written;
  if (has_next() && written != delivered_) {
    const bool is_one_run = written <= run_end;
    const size_t held_back = is_one_run ? delivered_ : find_character(written - 1);
    end = std::max(held_back, delivered_ + 1);  // one byte at least, or it would stall
  }
  first_run_ = std::min(run_end, end) - delivered_;
  delivered_ = end;
  assert(chunk_begin_ <= delivered_ && delivered_ <= taken_);
  assert(taken_ <= fetched_ && fetched_ <= text_.get().size());
  assert(first_run_ <= longest_first_run);
}

size_t HeaderChunks::find_character(size_t at) const {
  while (text_.continues_character(at)) --at;
  return at;
}

// What comes after the bytes fetched has not been looked at.
size_t HeaderChunks::end_character(size_t at) const {
  while (at != fetched_ && text_.continues_character(at)) ++at;
  return at;
}

}  // namespace fast
