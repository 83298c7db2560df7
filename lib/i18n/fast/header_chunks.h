// Where the exact road cuts header text into chunks, found without its converters.
#pragma once

#include <cassert>
#include <cstddef>

#include "conversion/chunk_sizes.h"
#include "fast/header_text.h"

namespace fast {

// The exact road converts so many UTF-16 units at a time (docs/architecture.md says why) and writes
// them as chunks of UTF-8, which are pieces of the text itself. As long as more follows, a chunk
// holds back its last character, and the next chunk begins with it. For what comes from before its
// units the converter knows no position, so the exact road takes all of it for one character: the
// one that was held back, the rest of one that did not fit into the last chunk, and a pair of units
// that was split between these units and the last. That is the first run of a chunk.
//
// An example, 86 units at a time: 85 letters, a character that is a pair in UTF-16, its units the
// 86th and the 87th, and three more letters.
//
//   bytes       0 to 83      84          85 to 88                89 to 91
//   first       written      held back   half fetched, waiting
//   second                   \__ first run, one character __/    written
//
//   positions   chunk_begin   delivered   taken   fetched   first_run
//   first           0            84         85       85         0
//   second         84            92         92       92         5
//
// Order of calls: next(), then what it found; the same again as long as has_next() is true.
class HeaderChunks {
 public:
  // A character, or what is left of one, and a pair.
  static constexpr size_t longest_first_run = 8;

  // room: the most bytes that a chunk may have, more than the longest first run.
  HeaderChunks(const HeaderText& text, size_t room) : text_(text), room_(room) {
    assert(room > longest_first_run);
  }

  // False when the text that comes next is not well-formed.
  bool next();
  bool has_next() const { return room_was_full_ || !is_last_fetch_; }

  // Where the chunk begins in the text, and its bytes.
  size_t get_begin() const { return chunk_begin_; }
  Bytes get_chunk() const { return text_.get().subspan(chunk_begin_, delivered_ - chunk_begin_); }
  // How many bytes at its beginning count as one character; 0 when they are characters as usual.
  size_t get_first_run() const { return first_run_; }

 private:
  static constexpr size_t units_at_once = i18n::get_unit_chunk(i18n::chunk_bytes);

  bool fetch();
  void write();
  size_t find_character(size_t at) const;  // where the one that has this byte begins
  size_t end_character(size_t at) const;   // where it ends; at itself between two

  const HeaderText& text_;
  size_t room_;

  // Positions in the text, each at or behind the one before it. What the converter has taken, but
  // not delivered, was held back or did not fit.
  size_t chunk_begin_ = 0;
  size_t delivered_ = 0;
  size_t taken_ = 0;
  size_t fetched_ = 0;

  size_t first_run_ = 0;
  size_t vanished_ = 0;          // the units of characters that vanish behind what was fetched
  bool splits_pair_ = false;     // the units fetched end with the first half of a pair
  bool begins_in_pair_ = false;  // they begin with the second half of one, not yet written
  bool is_last_fetch_ = false;
  bool room_was_full_ = false;
};

}  // namespace fast
