// Where the exact road cuts UTF-8 header text into chunks, found without conversion.
#pragma once

#include <cstddef>

#include "conversion/chunk_sizes.h"
#include "core/bytes.h"

namespace fast {

using i18n::Bytes;

// The exact road converts 86 UTF-16 units at a time and writes them as chunks of UTF-8, which are
// pieces of the text itself. A chunk holds back its last character, as long as more follows, and
// the next one begins with it: what the converter then has no position for, hangs together. These
// are that character, the rest of one that did not fit into the chunk before, and a pair of units
// that the first 86 split.
class HeaderChunks {
 public:
  // room: the most bytes that a chunk may have, more than any characters that hang together.
  HeaderChunks(Bytes header, size_t chunk_room) : text(header), room(chunk_room) {}

  // False when the text that comes next is not well-formed.
  bool next();
  bool has_next() const { return room_was_full || !is_last_fetch; }

  Bytes get_chunk() const { return text.subspan(chunk_begin, delivered - chunk_begin); }
  // How many bytes at its beginning hang together; 0 when there are none but whole characters.
  size_t get_first_run() const { return first_run; }

 private:
  static constexpr size_t units_at_once = i18n::get_unit_chunk(i18n::chunk_bytes);

  bool fetch();
  void write();
  size_t find_character(size_t at) const;  // where the one that has this byte begins

  Bytes text;
  size_t room;

  // Positions in the text. What is written but not delivered was held back; what is held, but not
  // written, did not fit.
  size_t chunk_begin = 0;
  size_t delivered = 0;
  size_t written = 0;
  size_t held = 0;
  size_t fetched = 0;

  size_t first_run = 0;
  bool splits_pair = false;     // the units fetched end with the first half of a pair
  bool begins_in_pair = false;  // and these began with the second half of one, not yet written
  bool is_last_fetch = false;
  bool room_was_full = false;
};

}  // namespace fast
