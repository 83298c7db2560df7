#include "charset/pivot.h"

#include <iterator>

#include "text/icu/converter.h"

namespace i18n {

namespace {

// How much to ask for: more than a long text needs. The rest is never touched and costs nothing,
// but without it a program that converts and releases in a loop would lose the end of its heap in
// each turn, and get it back by page faults that take as long as the conversion. glibc keeps twice
// the size of the largest block that was ever released, and 128 KiB at first. So the units count
// for the output as well: it has up to seven bytes for each unit that there is room for.
size_t get_request(size_t units) {
  constexpr size_t long_text = 8192;
  constexpr size_t heap_margin = size_t{136} << 10;
  constexpr size_t largest_kept = size_t{32} << 20;  // a larger block is a mapping of its own
  const size_t bytes = 7 * units + heap_margin;
  return units > long_text && bytes < largest_kept ? bytes / sizeof(UChar) : units;
}

}  // namespace

Units::Units(size_t size) {
  if (size > std::size(few_)) many_ = std::make_unique_for_overwrite<UChar[]>(get_request(size));
}

Progress to_unicode(UConverter* converter, std::string_view input, UChar* units, size_t capacity,
                    int32_t* offsets) {
  UErrorCode status = U_ZERO_ERROR;
  const char* source = input.data();
  UChar* target = units;
  ucnv_toUnicode(converter, &target, units + capacity, &source, input.data() + input.size(),
                 offsets, true, &status);
  text::check_memory(status);
  return {status, static_cast<size_t>(source - input.data()), static_cast<size_t>(target - units)};
}

Progress from_unicode(UConverter* converter, std::u16string_view text, char* output,
                      size_t capacity, int32_t* offsets) {
  UErrorCode status = U_ZERO_ERROR;
  const UChar* source = text.data();
  char* target = output;
  ucnv_fromUnicode(converter, &target, output + capacity, &source, text.data() + text.size(),
                   offsets, true, &status);
  text::check_memory(status);
  return {status, static_cast<size_t>(source - text.data()), static_cast<size_t>(target - output)};
}

Progress to_unicode(const i18n_charset_t& charset, std::string_view input, UChar* units,
                    size_t capacity, int32_t* offsets) {
  const Progress progress = to_unicode(charset.converter, input, units, capacity, offsets);
  charset.has_unfinished_input = U_FAILURE(progress.status);
  return progress;
}

Progress from_unicode(const i18n_charset_t& charset, std::u16string_view text, char* output,
                      size_t capacity, int32_t* offsets) {
  const Progress progress = from_unicode(charset.converter, text, output, capacity, offsets);
  charset.has_unfinished_output = U_FAILURE(progress.status);
  return progress;
}

}  // namespace i18n
