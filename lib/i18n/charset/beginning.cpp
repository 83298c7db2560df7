#include "charset/beginning.h"

#include <exception>

namespace i18n {

Beginning::Beginning(const i18n_charset_t& charset, const Direction& direction)
    : charset_(charset),
      direction_(direction),
      was_unfinished_(direction.is_unfinished(charset)),
      unfinished_(was_unfinished_ ? text::copy_converter(charset.converter) : nullptr),
      exceptions_(std::uncaught_exceptions()) {}

Beginning::~Beginning() {
  if (std::uncaught_exceptions() == exceptions_) return;
  if (unfinished_) {
    const text::ConverterPtr changed(charset_.converter);
    charset_.converter = unfinished_.release();
  } else if (!was_unfinished_) {
    direction_.reset(charset_.converter);
  }
  direction_.is_unfinished(charset_) = was_unfinished_;
}

text::ConverterPtr Beginning::make_converter() const {
  if (unfinished_) return text::copy_converter(unfinished_.get());
  if (was_unfinished_) return nullptr;
  text::ConverterPtr initial = text::copy_converter(charset_.converter);
  if (initial) ucnv_reset(initial.get());
  return initial;
}

}  // namespace i18n
