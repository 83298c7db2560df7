#include "text/tables/route.h"

#include <algorithm>
#include <cstring>

#include "text/icu/converter_types.h"
#include "text/unicode/latin1.h"
#include "text/unicode/utf16.h"
#include "text/unicode/utf8.h"

namespace text {

namespace {

// At most so much of a text, so that it ends between two characters if it is well-formed.
Bytes get_piece(Bytes utf8, size_t size) {
  if (utf8.size() <= size) return utf8;
  size_t end = size;
  while (end != 0 && size - end < 3 && continues_character(utf8[end])) --end;
  return utf8.first(end);
}

}  // namespace

std::optional<Route> Route::find(const Charset* from, const Charset* to, size_t size) {
  if (from == nullptr || to == nullptr) return std::nullopt;
  Route route(*from, *to);
  if (!route.from_utf8_) route.from_ = from->get_table(size);
  if (!route.to_utf8_) route.to_ = to->get_table(size);
  if ((!route.from_utf8_ && route.from_ == nullptr) || (!route.to_utf8_ && route.to_ == nullptr)) {
    return std::nullopt;
  }
  return route;
}

Route::Route(const Charset& from, const Charset& to)
    : from_utf8_(from.type() == UCNV_UTF8),
      to_utf8_(to.type() == UCNV_UTF8),
      from_single_bytes_(is_single_byte(from.type())),
      from_latin1_(from.type() == UCNV_LATIN_1),
      to_latin1_(to.type() == UCNV_LATIN_1),
      is_to_simple_(to_utf8_ || to_latin1_ || to.type() == UCNV_US_ASCII) {}

bool Route::keeps(Bytes text) const {
  return from_utf8_ && to_utf8_ ? is_utf8(text) : is_simple() && is_ascii(text);
}

std::optional<size_t> Route::count_bytes(Bytes text) const {
  if (from_latin1_ && to_utf8_) return get_utf8_size(text);
  return std::nullopt;
}

size_t Route::count_units(Bytes text) const {
  return from_utf8_ ? text::count_units(text) : text.size();
}

size_t Route::count_units(Bytes text, Bytes converted) const {
  if (counts_exactly()) return count_units(text);
  if (to_utf8_) return text::count_units(converted);
  size_t units = 0;
  for (unsigned char utf8[1024]; !text.empty();) {
    const Progress progress = from_->to_utf8(text, utf8, sizeof utf8);
    units += text::count_units({utf8, progress.written});
    text = text.subspan(progress.read);
  }
  return units;
}

Progress Route::convert(Bytes text, unsigned char* out, size_t room) const {
  if (from_utf8_) return convert_utf8(text, out, room);
  if (!to_utf8_) return convert_by_utf8(text, out, room);
  if (from_latin1_ && room > copy_slack + 1) {
    const Bytes piece = text.first(std::min(text.size(), (room - copy_slack) / 2));
    const unsigned char* const end = latin1_to_utf8(out, piece);
    return {piece.size(), static_cast<size_t>(end - out),
            piece.size() == text.size() ? Stop::kDone : Stop::kFull};
  }
  return from_->to_utf8(text, out, room);
}

Progress Route::convert_utf8(Bytes text, unsigned char* out, size_t room) const {
  if (to_latin1_ && room > copy_slack) {
    const Bytes piece = get_piece(text, room - copy_slack);
    const unsigned char* const end = utf8_to_latin1(out, piece);
    if (end != nullptr) {
      return {piece.size(), static_cast<size_t>(end - out),
              piece.size() == text.size() ? Stop::kDone : Stop::kFull};
    }
  }
  // ASCII is well-formed, and often all that there is.
  const size_t run = to_utf8_ ? 0 : to_->copy_ascii(text.first(std::min(text.size(), room)), out);
  Progress all{run, run, Stop::kDone};
  while (all.read != text.size() && all.stop == Stop::kDone) {
    // Few enough to be in the processor's first cache yet when they are converted.
    constexpr size_t longest_piece = size_t{16} << 10;
    constexpr size_t longest_character = 4;
    const size_t space = room - all.written;
    const size_t most = to_utf8_ ? space : std::max(space, longest_character);
    const Bytes piece = get_piece(text.subspan(all.read), std::min(most, longest_piece));
    if (piece.empty()) return {all.read, all.written, Stop::kFull};
    const size_t valid = find_invalid(piece);
    Progress progress{valid, valid, Stop::kDone};
    if (to_utf8_) {
      std::memcpy(out + all.written, piece.data(), valid);
    } else {
      progress = to_->from_utf8(piece.first(valid), out + all.written, space, invisible_);
    }
    if (progress.stop == Stop::kDone && valid != piece.size()) progress.stop = Stop::kRefused;
    all = {all.read + progress.read, all.written + progress.written, progress.stop};
  }
  return all;
}

Progress Route::convert_by_utf8(Bytes text, unsigned char* out, size_t room) const {
  unsigned char utf8[1024];
  Progress all{0, 0, Stop::kDone};
  while (all.read != text.size()) {
    const Bytes rest = text.subspan(all.read);
    Progress first = from_->to_utf8(rest, utf8, sizeof utf8);
    const Progress second =
        to_->from_utf8({utf8, first.written}, out + all.written, room - all.written, invisible_);
    // What did not get through the second half was not read.
    if (second.stop != Stop::kDone) first.read = from_->to_utf8(rest, utf8, second.read).read;
    all.read += first.read;
    all.written += second.written;
    all.stop = second.stop != Stop::kDone ? second.stop : first.stop;
    if (all.stop == Stop::kRefused || second.stop != Stop::kDone) return all;
  }
  all.stop = Stop::kDone;
  return all;
}

}  // namespace text
