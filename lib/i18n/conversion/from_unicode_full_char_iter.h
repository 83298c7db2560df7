// UTF-16 to bytes of a charset in chunks that end on whole characters, for header words.
#pragma once

#include <string>

#include "conversion/ucnv_chunk_iter.h"

namespace i18n {

// While more output will follow, the last character of each conversion call is held back and opens
// the next chunk. A call that has output delivers one byte of it at least, so a character that is
// longer than the room, or alone in its call, is split rather than stalling.
class FromUnicodeFullCharIter : public FromUnicodeIter {
 public:
  using FromUnicodeIter::FromUnicodeIter;
  ~FromUnicodeFullCharIter() override;
  void next_chunk() override;

 private:
  std::int32_t find_cut(std::int32_t produced) const;

  std::string carry;
};

}  // namespace i18n
