// The two steps of a one-shot conversion: a whole text to UTF-16, and from there to the target.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include <unicode/ucnv.h>

#include "charset/charset_handle.h"

namespace i18n {

// An array of UTF-16 units that is not initialised, and not on the heap when it is short.
class Units {
 public:
  explicit Units(size_t size);

  UChar* get() { return many_ ? many_.get() : few_; }

 private:
  UChar few_[512];
  std::unique_ptr<UChar[]> many_;
};

inline bool overlap(std::string_view bytes, const char* buffer, size_t capacity) {
  const std::less<const char*> is_before;
  return is_before(bytes.data(), buffer + capacity) &&
         is_before(buffer, bytes.data() + bytes.size());
}

struct Progress {
  UErrorCode status;
  size_t consumed;  // of the source
  size_t produced;  // in the target
};

// Each converts a whole text, from the state that the converter is in. offsets may be null; else it
// gets, for each element of the target, the index in the source from which that came. A null
// converter is an error like any other; memory that runs out is an exception.
Progress to_unicode(UConverter* converter, std::string_view input, UChar* units, size_t capacity,
                    int32_t* offsets);
Progress from_unicode(UConverter* converter, std::u16string_view text, char* output,
                      size_t capacity, int32_t* offsets);

// The same with a handle's own converter: the handle then knows whether that is in the middle of a
// text.
Progress to_unicode(const i18n_charset_t& charset, std::string_view input, UChar* units,
                    size_t capacity, int32_t* offsets);
Progress from_unicode(const i18n_charset_t& charset, std::u16string_view text, char* output,
                      size_t capacity, int32_t* offsets);

}  // namespace i18n
