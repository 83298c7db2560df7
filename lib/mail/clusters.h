// Extended grapheme clusters: what a reader takes for one character.
#pragma once

#include <string>
#include <string_view>

#include <unicode/ubrk.h>

namespace mail {

class Clusters {
 public:
  // Whether a cluster of the text ends at the index, where a character ends. A cluster begins at
  // `begin`; how far that is before the index is what the answer costs at most.
  bool end_at(std::string_view text, size_t begin, size_t index);

 private:
  icu::LocalUBreakIteratorPointer iterator_;  // opened when it is needed
  std::u16string units_;
};

}  // namespace mail
