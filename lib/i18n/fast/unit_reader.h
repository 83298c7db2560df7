// The first half of a conversion: bytes of a charset to UTF-16, by ICU, a piece at a time.
#pragma once

#include <cstddef>
#include <string_view>

#include <unicode/ucnv.h>

#include "core/bytes.h"
#include "text/icu/converter.h"

namespace fast {

using i18n::Bytes;

// Whether what a converter gives does not depend on how much of the text a call sees. Some look
// ahead, or choose between forms by what they see.
bool is_independent(const UConverter* converter);

// Order of calls: read() until has_read_all() or has_failed().
class UnitReader {
 public:
  UnitReader(text::ConverterPtr converter, Bytes text);

  // The next units, valid until the next call; in between there can be none.
  std::u16string_view read();
  bool has_read_all() const { return is_at_end_; }
  bool has_failed() const { return failed_; }

  static constexpr size_t unit_count = 1024;

 private:
  text::ConverterPtr converter_;
  const char* source_;
  const char* source_end_;
  bool is_at_end_ = false;
  bool failed_ = false;
  char16_t units_[unit_count];
};

}  // namespace fast
