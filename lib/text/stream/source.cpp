#include "text/stream/source.h"

#include <utility>

#include "text/icu/converter_types.h"

namespace text {

std::optional<Source> Source::open(const char* charset) {
  ConverterPtr converter = open_lossless(charset);
  if (converter == nullptr) return std::nullopt;
  return Source(charset, std::move(converter));
}

Source::Source(std::string charset, ConverterPtr converter)
    : charset_(std::move(charset)), converter_(std::move(converter)) {}

Source Source::copy() const { return Source(charset_, copy_converter(converter_.get())); }

Source Source::copy_anew() const { return Source(charset_, open_lossless_again(charset_.c_str())); }

Source::Result Source::read(const char*& bytes, const char* end, char16_t*& units,
                            const char16_t* units_end) {
  UErrorCode status = U_ZERO_ERROR;
  ucnv_toUnicode(converter_.get(), &units, units_end, &bytes, end, nullptr, false, &status);
  if (status == U_BUFFER_OVERFLOW_ERROR) return Result::more;
  return U_SUCCESS(status) ? Result::all : Result::invalid;
}

Source::Result Source::finish(char16_t*& units, const char16_t* units_end) {
  if (type() == UCNV_HZ && is_cut()) return Result::incomplete;
  const char* bytes = "";
  UErrorCode status = U_ZERO_ERROR;
  ucnv_toUnicode(converter_.get(), &units, units_end, &bytes, bytes, nullptr, true, &status);
  if (status == U_BUFFER_OVERFLOW_ERROR) return Result::more;
  if (status == U_TRUNCATED_CHAR_FOUND) return Result::incomplete;
  return U_SUCCESS(status) ? Result::all : Result::invalid;
}

// At the end of HZ, ICU drops a tilde and the first byte of a character without a word. A byte that
// comes after them tells: alone it is itself or the first of two.
bool Source::is_cut() {
  const char byte = '!';
  const char* bytes = &byte;
  char16_t unit[4];
  char16_t* end = unit;
  const Result result = read(bytes, bytes + 1, end, unit + 4);
  return result != Result::all || (end != unit && unit[0] != u'!');
}

void Source::reset() {
  if (is_reset_by_icu(type())) {
    ucnv_resetToUnicode(converter_.get());
  } else {
    *this = copy_anew();
  }
}

bool Source::is_between_characters() const {
  return has_no_states(type()) && !is_inside_character();
}

bool Source::is_inside_character() const {
  UErrorCode status = U_ZERO_ERROR;
  return has_no_states(type()) && ucnv_toUCountPending(converter_.get(), &status) != 0;
}

}  // namespace text
