// Hands out the input unchanged, for bodies that need no conversion.
#pragma once

#include <cstdint>
#include <string_view>

#include "conversion/charset_to_charset_iter.h"

namespace i18n {

class TrivialIter : public CharsetToCharsetIterPrototype {
 public:
  explicit TrivialIter(int max_chunk_bytes);
  ~TrivialIter() override;

  void next_chunk() override;
  bool has_next_chunk() override;
  void set_limit_byte_size(int n) override;  // 0 < n < the size of a chunk of this input
  CharIter<char> get_char_iter() override;   // over nothing: the input is not known in characters
  void borrow_in_str(std::string_view input) override;

 private:
  std::string_view rest_;  // of the input
  std::int32_t max_chunk;
  std::int32_t chunk_max;  // the smaller of max_chunk and the input's size
  std::int32_t limit;      // bytes per chunk
};

}  // namespace i18n
