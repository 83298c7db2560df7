// One-shot conversion that tells what went wrong, and where. Only a failure needs offsets, which
// take as long as the conversion: then what it takes of the text is converted once more, with
// offsets.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <qorvii18n/i18n_iconv.h>

#include "charset/beginning.h"
#include "charset/charset_handle.h"
#include "charset/direct.h"
#include "charset/pivot.h"
#include "core/c_string.h"
#include "core/offsets.h"
#include "text/icu/limits.h"
#include "text/unicode/utf16.h"

namespace {

using i18n::Progress;
using Offsets = std::vector<int32_t>;

enum Result {
  kConverted = 0,
  kTruncatedInput = -1,
  kOutputFull = -2,
  kInvalidInput = -3,
  kUnmappable = -4
};

constexpr size_t bytes_per_unit = 14;  // more than any charset needs, escape sequences included

// The input, and what it is in UTF-16.
class Source {
 public:
  // Input that cannot be read a second time is read with offsets at once.
  Source(const i18n_charset_t& charset, std::string_view input, bool will_be_overwritten)
      : charset_(charset),
        input_(input),
        capacity_(std::min(2 * input_.size(), text::most_units_at_once)),
        units_(capacity_),
        beginning_(charset, i18n::reading) {
    if (will_be_overwritten || !text::is_copyable(charset.converter)) {
      offsets_.assign(capacity_, i18n::no_offset);
    }
  }

  Progress read() {
    const Progress progress = i18n::to_unicode(charset_, input_, units_.get(), capacity_,
                                               offsets_.empty() ? nullptr : offsets_.data());
    length_ = progress.produced;
    return progress;
  }

  std::u16string_view get_text() { return {units_.get(), length_}; }

  // The index of the input byte from which a unit came, 0 when that is not known.
  size_t find_byte(int32_t unit) {
    if (unit < 0 || static_cast<size_t>(unit) >= length_) return 0;
    if (offsets_.empty()) {
      if (is_all_utf8()) {
        return text::find_byte_of_unit(text::as_bytes(input_), static_cast<size_t>(unit));
      }
      read_again();
    }
    return static_cast<size_t>(std::max(offsets_[static_cast<size_t>(unit)], 0));
  }

 private:
  // No unit came from what an earlier call left in the converter.
  bool is_all_utf8() const {
    return ucnv_getType(charset_.converter) == UCNV_UTF8 && !beginning_.was_unfinished();
  }

  void read_again() {
    offsets_.assign(text::most_offsets_per_unit * length_, i18n::no_offset);
    i18n::to_unicode(beginning_.make_converter().get(), input_, units_.get(), length_,
                     offsets_.data());
  }

  const i18n_charset_t& charset_;
  std::string_view input_;
  size_t capacity_;
  i18n::Units units_;
  size_t length_ = 0;
  Offsets offsets_;  // empty when the input was read without
  i18n::Beginning beginning_;
};

class Target {
 public:
  Target(const i18n_charset_t& charset, char* output, size_t capacity)
      : charset_(charset),
        output_(output),
        capacity_(capacity),
        beginning_(charset, i18n::writing) {}

  Progress write(std::u16string_view text) {
    progress_ = i18n::from_unicode(charset_, text, output_, capacity_, nullptr);
    return progress_;
  }

  // The unit from which the last byte of the output came, no_offset when that is not known. Where a
  // character is lacking, the units shortly before it tell, as long as they become the end of the
  // output again: in a charset with states they may not. Else all of the text is written again.
  int32_t find_last_unit(std::u16string_view text) const {
    if (progress_.produced == 0) return i18n::no_offset;
    constexpr size_t few_units = 256;
    if (progress_.status == U_INVALID_CHAR_FOUND && progress_.consumed > few_units) {
      const size_t begin = progress_.consumed - few_units;
      const Again end = write_again(text.substr(begin), bytes_per_unit * few_units);
      const bool is_same = end.consumed == few_units &&
                           std::string_view(output_, progress_.produced).ends_with(end.output);
      const int32_t unit = end.get_last_offset();
      if (is_same && unit != i18n::no_offset) return static_cast<int32_t>(begin) + unit;
    }
    return write_again(text, progress_.produced).get_last_offset();
  }

 private:
  struct Again {
    size_t consumed;
    std::string output;
    Offsets offsets;  // of the output

    int32_t get_last_offset() const { return offsets.empty() ? i18n::no_offset : offsets.back(); }
  };

  // From the state before the call, and to another place.
  Again write_again(std::u16string_view text, size_t room) const {
    std::string output(room, '\0');
    Offsets offsets(room, i18n::no_offset);
    const Progress progress = i18n::from_unicode(beginning_.make_converter().get(), text,
                                                 output.data(), room, offsets.data());
    output.resize(progress.produced);
    offsets.resize(progress.produced);
    return {progress.consumed, std::move(output), std::move(offsets)};
  }

  const i18n_charset_t& charset_;
  char* output_;
  size_t capacity_;
  Progress progress_ = {};
  i18n::Beginning beginning_;
};

Result get_read_failure(UErrorCode status) {
  return status == U_INDEX_OUTOFBOUNDS_ERROR || status == U_TRUNCATED_CHAR_FOUND ? kTruncatedInput
                                                                                 : kInvalidInput;
}

Result get_write_result(UErrorCode status) {
  switch (status) {
    case U_INVALID_CHAR_FOUND:
      return kUnmappable;
    case U_BUFFER_OVERFLOW_ERROR:
      return kOutputFull;
    default:
      return kConverted;
  }
}

}  // namespace

// Nothing is stored before the last thing that can throw.
int i18n_iconv_easy_ex(const i18n_charset_t* from, const char* input, size_t input_length,
                       size_t* error_position, const i18n_charset_t* to, char** output,
                       size_t* output_length) {
  const bool is_callers = *output != nullptr;
  size_t capacity = is_callers ? std::min(*output_length, text::most_bytes_at_once) : 0;
  *output_length = 0;
  if (input_length > text::most_bytes_at_once || (input == nullptr && input_length > 0)) {
    *error_position = 0;
    return kInvalidInput;
  }
  const std::string_view bytes(input, input_length);
  if (!is_callers) {
    i18n::CString result = i18n::convert_directly(*from, bytes, *to, bytes_per_unit, output_length);
    if (result) *output = result.release();
    if (*output != nullptr) return kConverted;
  }
  const bool will_be_overwritten = is_callers && i18n::overlap(bytes, *output, capacity);
  if (is_callers && !will_be_overwritten) {
    const auto length = i18n::convert_directly(*from, bytes, *to, *output, capacity);
    if (length) {
      *output_length = *length;
      return kConverted;
    }
  }
  Source source(*from, bytes, will_be_overwritten);
  const Progress reading = source.read();
  if (U_FAILURE(reading.status)) {
    *error_position = reading.consumed;
    return get_read_failure(reading.status);
  }

  const std::u16string_view text = source.get_text();
  i18n::CString allocated;
  if (!is_callers) {
    const size_t size = bytes_per_unit * text.size() + 1;
    allocated = i18n::allocate_c_string(size);
    capacity = std::min(size, text::most_bytes_at_once);
  }
  Target target(*to, is_callers ? *output : allocated.get(), capacity);
  const Progress writing = target.write(text);
  const Result result = get_write_result(writing.status);
  if (result != kConverted) *error_position = source.find_byte(target.find_last_unit(text));
  if (!is_callers) *output = allocated.release();
  *output_length = writing.produced;
  return result;
}
