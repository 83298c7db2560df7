// Where the exact road cuts UTF-8 header text into chunks, found without conversion.
#pragma once

#include <cstddef>

#include "conversion/chunk_sizes.h"
#include "core/bytes.h"

namespace fast {

using i18n::Bytes;

// The exact road converts 86 UTF-16 units at a time and writes them as chunks of UTF-8, which are
// pieces of the text itself. As long as more follows, a chunk holds back its last character, and
// the next chunk begins with it. For what comes from before its units the converter knows no
// position, so the exact road takes all of it for one character: the one that was held back, the
// rest of one that did not fit into the last chunk, and a pair of units that was split between
// these 86 and the last.
class HeaderChunks {
 public:
  // room: the most bytes that a chunk may have, more than are ever taken for one character.
  HeaderChunks(Bytes text, size_t room) : text_(text), room_(room) {}

  // False when the text that comes next is not well-formed.
  bool next();
  bool has_next() const { return room_was_full_ || !is_last_fetch_; }

  Bytes get_chunk() const { return text_.subspan(chunk_begin_, delivered_ - chunk_begin_); }
  // How many bytes at its beginning count as one character for that reason; 0 when there are none.
  size_t get_first_run() const { return first_run_; }

 private:
  static constexpr size_t units_at_once = i18n::get_unit_chunk(i18n::chunk_bytes);

  bool fetch();
  void write();
  size_t find_character(size_t at) const;  // where the one that has this byte begins
  size_t end_character(size_t at) const;   // where it ends; at itself between two

  Bytes text_;
  size_t room_;

  // Positions in the text, each at or behind the one before it. What the converter has taken, but
  // not delivered, was held back or did not fit.
  size_t chunk_begin_ = 0;
  size_t delivered_ = 0;
  size_t taken_ = 0;
  size_t fetched_ = 0;

  size_t first_run_ = 0;
  bool splits_pair_ = false;     // the units fetched end with the first half of a pair
  bool begins_in_pair_ = false;  // they begin with the second half of one, not yet written
  bool is_last_fetch_ = false;
  bool room_was_full_ = false;
};

}  // namespace fast
