#include "text/stream/history.h"

#include <cassert>
#include <cstring>
#include <utility>

namespace text {

bool History::is_losing_lead(const Mark& now) const {
  const Generation& newest = generations_[newest_];
  return now.lead != 0 && !now.lead_begin && has_two_ && newest.size >= max_read &&
         newest.mark.units == now.units;
}

void History::prepare(const Mark& now, const Source& source, const Target& target) {
  if (now.lead == 0 && source.is_between_characters() && target.is_between_characters()) {
    has_two_ = false;
    begin_newest(now, std::nullopt, std::nullopt);
  } else if (generations_[newest_].size >= max_read) {
    Source source_now = source.copy();
    Target target_now = target.copy();
    has_two_ = true;
    newest_ = 1 - newest_;
    begin_newest(now, std::move(source_now), std::move(target_now));
  }
}

void History::begin_newest(const Mark& mark, std::optional<Source> source,
                           std::optional<Target> target) {
  Generation& newest = generations_[newest_];
  newest.mark = mark;
  newest.source = std::move(source);
  newest.target = std::move(target);
  newest.size = 0;
}

void History::append(const char* bytes, size_t size) {
  Generation& newest = generations_[newest_];
  assert(size <= max_read && newest.size < max_read);
  std::memcpy(newest.bytes + newest.size, bytes, size);
  newest.size += size;
}

void History::clear() {
  has_two_ = false;
  begin_newest(Mark(), std::nullopt, std::nullopt);
}

// When the oldest mark has a lead that waits still, the newest has the same.
std::uint64_t History::lead_begin() const {
  return generations_[newest_].mark.lead_begin.value_or(begin().bytes);
}

std::string History::bytes() const {
  std::string bytes(oldest().bytes, oldest().size);
  const Generation& newest = generations_[newest_];
  if (has_two_) bytes.append(newest.bytes, newest.size);
  return bytes;
}

Source History::copy_source(const Source& source) const {
  return oldest().source ? oldest().source->copy() : source.copy_anew();
}

Target History::copy_target(const Target& target) const {
  return oldest().target ? oldest().target->copy() : target.copy_anew();
}

}  // namespace text
