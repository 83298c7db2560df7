// The state of a handle's converter before a call.
#pragma once

#include <unicode/ucnv.h>

#include "charset/charset_handle.h"
#include "text/icu/converter.h"

namespace i18n {

// One of the two directions of a converter, whose states are apart.
struct Direction {
  bool& (*is_unfinished)(const i18n_charset_t& charset);
  void (*reset)(UConverter* converter);
};
inline constexpr Direction reading = {
    [](const i18n_charset_t& charset) -> bool& { return charset.has_unfinished_input; },
    ucnv_resetToUnicode};
inline constexpr Direction writing = {
    [](const i18n_charset_t& charset) -> bool& { return charset.has_unfinished_output; },
    ucnv_resetFromUnicode};

// The state is mostly the initial one, which need not be kept. An exception on its way out puts the
// converter back into it, where the converter can be copied.
class Beginning {
 public:
  Beginning(const i18n_charset_t& charset, const Direction& direction);
  Beginning(const Beginning&) = delete;
  Beginning& operator=(const Beginning&) = delete;
  ~Beginning();

  bool was_unfinished() const { return was_unfinished_; }

  // A converter in that state, null when there can be none.
  text::ConverterPtr make_converter() const;

 private:
  const i18n_charset_t& charset_;
  const Direction& direction_;
  const bool was_unfinished_;
  text::ConverterPtr unfinished_;
  const int exceptions_;
};

}  // namespace i18n
