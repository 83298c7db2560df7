#include "text/stream/target.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <unicode/utf16.h>

#include "text/icu/converter_types.h"

namespace text {

namespace {

// ICU writes private use in one direction only, whatever it is told, and U+FFFE and U+FFFF in
// LMBCS.
bool may_be_one_way(UChar32 character) {
  return (0xE000 <= character && character <= 0xF8FF) || character >= 0xF0000 ||
         character == 0xFFFE || character == 0xFFFF;
}

// Whether there may be any. Without branches, so that compilers make vector code of it.
bool may_be_one_way(std::u16string_view units) {
  unsigned count = 0;
  for (const char16_t unit : units) {
    count += unsigned{static_cast<char16_t>(unit - 0xDB80) < 0x1D80} | unsigned{unit >= 0xFFFE};
  }
  return count > 0;
}

// ICU writes and reads a character alone.
bool goes_there_and_back(UConverter* converter, std::u16string_view character) {
  char bytes[32];
  char* bytes_end = bytes;
  char16_t back[8];
  char16_t* back_end = back;
  const char16_t* units = character.data();
  const char* read = bytes;
  UErrorCode status = U_ZERO_ERROR;
  ucnv_reset(converter);
  ucnv_fromUnicode(converter, &bytes_end, std::end(bytes), &units, units + character.size(),
                   nullptr, true, &status);
  ucnv_toUnicode(converter, &back_end, std::end(back), &read, bytes_end, nullptr, true, &status);
  return U_SUCCESS(status) && std::u16string_view(back, back_end) == character;
}

}  // namespace

std::optional<Target> Target::open(const char* charset) {
  ConverterPtr converter = open_lossless(charset);
  if (converter == nullptr) return std::nullopt;
  return Target(charset, std::move(converter));
}

Target::Target(std::string charset, ConverterPtr converter)
    : charset_(std::move(charset)), converter_(std::move(converter)) {}

Target Target::copy() const { return Target(charset_, copy_converter(converter_.get())); }

Target Target::copy_anew() const { return Target(charset_, open_lossless_again(charset_.c_str())); }

Target::Result Target::write(const char16_t*& units, const char16_t* units_end, char*& bytes,
                             char* end) {
  UConverter* const converter = converter_.get();
  const auto most = writes_ahead(type()) ? 1 : units_end - units;
  UErrorCode status = U_ZERO_ERROR;
  do {
    const char16_t* const call_end = units + std::min(most, units_end - units);
    ucnv_fromUnicode(converter, &bytes, end, &units, call_end, nullptr, false, &status);
  } while (U_SUCCESS(status) && units != units_end);
  if (status == U_BUFFER_OVERFLOW_ERROR) return Result::more;
  return U_SUCCESS(status) ? Result::all : Result::lacking;
}

Target::Result Target::finish(char*& bytes, char* end) {
  const char16_t* units = u"";
  UErrorCode status = U_ZERO_ERROR;
  ucnv_fromUnicode(converter_.get(), &bytes, end, &units, units, nullptr, true, &status);
  if (status == U_BUFFER_OVERFLOW_ERROR) return Result::more;
  return U_SUCCESS(status) ? Result::all : Result::lacking;
}

// Those that ICU reports, and those that it will look at again.
size_t Target::count_unwritten() const {
  char16_t reported[32];
  auto size = static_cast<int8_t>(std::size(reported));
  UErrorCode status = U_ZERO_ERROR;
  ucnv_getInvalidUChars(converter_.get(), reported, &size, &status);
  return static_cast<size_t>(size) +
         static_cast<size_t>(ucnv_fromUCountPending(converter_.get(), &status));
}

size_t Target::find_one_way(std::u16string_view units) {
  if (is_unicode(type())) return units.size();
  if (type() == UCNV_ISCII) return find_unfit_for_iscii(units);
  for (size_t index = 0; may_be_one_way(units) && index < units.size();) {
    const size_t begin = index;
    UChar32 character;
    U16_NEXT_UNSAFE(units.data(), index, character);
    if (!may_be_one_way(character)) continue;
    if (probe_ == nullptr) probe_ = open_lossless_again(charset_.c_str());
    if (!goes_there_and_back(probe_.get(), units.substr(begin, index - begin))) return begin;
  }
  return units.size();
}

// In ISCII a joiner is a second sign after a virama. ICU drops a non-joiner that stands elsewhere,
// writes a joiner so that what follows it changes, and two viramas as one with a non-joiner. A CR
// takes the reader back to the charset's own script, of which the writer knows only after an LF. In
// Gurmukhi, bindi and tippi become each other, and an addak may become nothing.
size_t Target::find_unfit_for_iscii(std::u16string_view units) {
  for (size_t index = 0; index < units.size(); ++index) {
    const char16_t unit = units[index];
    const bool is_indic = 0x0900 <= unit && unit < 0x0D80;
    const bool is_virama = is_indic && (unit & 0x7F) == 0x4D;
    const bool is_joiner = unit == 0x200C || unit == 0x200D;
    if (is_joiner ? !is_after_virama_ : is_virama && is_after_virama_) return index;
    if (is_indic && is_after_cr_) return index;
    if (unit == 0x0A02 || unit == 0x0A70 || unit == 0x0A71) return index;
    is_after_virama_ = is_virama;
    is_after_cr_ = unit == u'\r' || (is_after_cr_ && unit != u'\n');
  }
  return units.size();
}

void Target::reset() {
  if (is_reset_by_icu(type())) {
    ucnv_resetFromUnicode(converter_.get());
    is_after_virama_ = is_after_cr_ = false;
  } else {
    *this = copy_anew();
  }
}

bool Target::is_between_characters() const {
  UErrorCode status = U_ZERO_ERROR;
  return has_no_states(type()) && ucnv_fromUCountPending(converter_.get(), &status) == 0;
}

}  // namespace text
