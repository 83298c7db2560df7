// One-shot conversion of a whole string, through UTF-16.
#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

#include <qorvii18n/i18n_iconv.h>

#include "charset/charset.h"
#include "charset/converter.h"
#include "core/c_string.h"
#include "core/offsets.h"

namespace {

// ICU takes no longer targets than these.
constexpr size_t max_target_bytes = 0x7fffffff;
constexpr size_t max_target_units = 0x3fffffff;

enum Result {
  kConverted = 0,
  kTruncatedInput = -1,
  kOutputFull = -2,
  kInvalidInput = -3,
  kUnmappable = -4
};

// An array that is not initialised, and not on the heap when it has no more than few elements.
template <class T, size_t few>
class WorkArea {
 public:
  explicit WorkArea(size_t size) {
    if (size > few) many = std::make_unique_for_overwrite<T[]>(size);
  }
  T* get() { return many ? many.get() : near; }

 private:
  T near[few];
  std::unique_ptr<T[]> many;
};

constexpr size_t few_units = 256;
using Units = WorkArea<UChar, few_units>;

// UTF-16 text in which every unit knows the input byte it came from.
struct TracedText {
  explicit TracedText(size_t unit_capacity)
      : capacity(unit_capacity), units(capacity), offsets(i18n::offsets_for(capacity)) {
    i18n::clear_offsets(offsets.get(), capacity);
  }

  size_t capacity;
  Units units;
  WorkArea<int32_t, i18n::offsets_for(few_units)> offsets;
  size_t length = 0;
};

// Returns ICU's status; *consumed is the number of input bytes read.
UErrorCode read_input(UConverter* converter, const char* input, size_t input_length,
                      TracedText& text, size_t* consumed) {
  UErrorCode status = U_ZERO_ERROR;
  const char* source = input;
  UChar* target = text.units.get();
  ucnv_toUnicode(converter, &target, target + text.capacity, &source, input + input_length,
                 text.offsets.get(), true, &status);
  text.length = static_cast<size_t>(target - text.units.get());
  *consumed = static_cast<size_t>(source - input);
  return status;
}

// More than any converter writes for a unit, its escape sequences included.
constexpr size_t bytes_per_unit = 14;

// A buffer can be far larger than any output of the text, and more than any converter writes is not
// offered to it.
size_t get_output_capacity(size_t units, size_t buffer_size) {
  constexpr size_t slack = 64;
  return std::min({buffer_size, bytes_per_unit * units + slack, max_target_bytes});
}

struct Written {
  UErrorCode status;
  size_t length;  // in bytes
};

Written write_output(UConverter* converter, TracedText& text, char* buffer, size_t capacity,
                     int32_t* offsets) {
  UErrorCode status = U_ZERO_ERROR;
  const UChar* source = text.units.get();
  char* target = buffer;
  ucnv_fromUnicode(converter, &target, buffer + capacity, &source, source + text.length, offsets,
                   true, &status);
  return {status, static_cast<size_t>(target - buffer)};
}

bool has_position(UErrorCode status) {
  return status == U_INVALID_CHAR_FOUND || status == U_BUFFER_OVERFLOW_ERROR;
}

// For each byte of output the unit it came from.
class OutputOffsets {
 public:
  OutputOffsets(const UConverter* converter, size_t units, size_t capacity)
      : offsets(i18n::offsets_for(capacity)),
        cleared(std::min(capacity, largest_output(converter, units))) {
    i18n::clear_offsets(offsets.get(), cleared);
  }

  int32_t* get() { return offsets.get(); }

  // The unit of the last byte of an output of so many bytes, no_offset when that is not known.
  int32_t get_last(size_t length) {
    return length == 0 || length > cleared ? i18n::no_offset : offsets.get()[length - 1];
  }

 private:
  static size_t largest_output(const UConverter* converter, size_t units) {
    constexpr size_t units_for_shifts = 10;
    return (units + units_for_shifts) * static_cast<size_t>(ucnv_getMaxCharSize(converter));
  }

  WorkArea<int32_t, 2048> offsets;
  size_t cleared;
};

// The index of the input byte from which a unit came, 0 when that is not known.
size_t find_input(TracedText& text, int32_t unit) {
  if (unit < 0 || static_cast<size_t>(unit) >= text.length) return 0;
  return static_cast<size_t>(std::max(text.offsets.get()[unit], 0));
}

// Room for four bytes a unit and a NUL.
int easy_capacity(int32_t units) {
  const int64_t wanted = int64_t{4} * units + 1;
  return static_cast<int>(std::min<int64_t>(wanted, std::numeric_limits<int>::max()));
}

}  // namespace

char* i18n_iconv_easy(const i18n_charset_t* from, const char* input, int input_length,
                      const i18n_charset_t* to, char* output, int64_t* output_length) {
  Units text(static_cast<size_t>(input_length));
  UErrorCode status = U_ZERO_ERROR;
  const int32_t units =
      ucnv_toUChars(from->converter, text.get(), input_length, input, input_length, &status);
  if (U_FAILURE(status)) return nullptr;

  i18n::CString allocated;
  int capacity;
  if (output != nullptr) {
    capacity = static_cast<int>(std::min<int64_t>(*output_length, std::numeric_limits<int>::max()));
  } else {
    capacity = easy_capacity(units);
    allocated = i18n::allocate_c_string(static_cast<size_t>(capacity));
    output = allocated.get();
  }

  status = U_ZERO_ERROR;
  const int32_t length =
      ucnv_fromUChars(to->converter, output, capacity, text.get(), units, &status);
  if (length < 0) return nullptr;  // longer than ICU can count
  if (output_length != nullptr) *output_length = length;
  if (U_FAILURE(status)) return nullptr;
  allocated.release();
  return output;
}

int i18n_iconv_easy_ex(const i18n_charset_t* from, const char* input, size_t input_length,
                       size_t* error_position, const i18n_charset_t* to, char** output,
                       size_t* output_length) {
  const size_t caller_capacity = *output_length;
  *output_length = 0;

  TracedText text(std::min(2 * input_length, max_target_units));
  size_t consumed;
  UErrorCode status = read_input(from->converter, input, input_length, text, &consumed);
  if (U_FAILURE(status)) {
    *error_position = consumed;
    return status == U_INDEX_OUTOFBOUNDS_ERROR || status == U_TRUNCATED_CHAR_FOUND ? kTruncatedInput
                                                                                   : kInvalidInput;
  }

  i18n::CString allocated;
  size_t buffer_size = caller_capacity;
  if (*output == nullptr) {
    // What some charsets write before any text: ISO-2022-KR four bytes, even when there is none.
    constexpr size_t header_size = 8;
    buffer_size = bytes_per_unit * text.length + header_size;
    allocated = i18n::allocate_c_string(buffer_size);
  }
  char* const buffer = allocated ? allocated.get() : *output;
  const size_t capacity = get_output_capacity(text.length, buffer_size);

  // Only a failure needs offsets, and for a long text they cost more than a copy of the converter. So
  // a long text is first converted without them. After a failure it is converted once more, with
  // offsets, by the copy, which is in the state in which the first attempt began.
  constexpr size_t most_units_of_short_text = 1024;
  const bool is_long = text.length > most_units_of_short_text;
  const i18n::ConverterPtr copy = is_long ? i18n::copy_converter(to->converter) : nullptr;
  Written written{};
  if (copy) written = write_output(to->converter, text, buffer, capacity, nullptr);
  if (!copy || has_position(written.status)) {
    UConverter* const converter = copy ? copy.get() : to->converter;
    OutputOffsets offsets(converter, text.length, capacity);
    written = write_output(converter, text, buffer, capacity, offsets.get());
    if (has_position(written.status)) {
      *error_position = find_input(text, offsets.get_last(written.length));
    }
  }

  if (allocated && is_long) {
    const size_t kept = std::min(written.length + 1, buffer_size);  // room for a caller's NUL
    allocated = i18n::shrink_c_string(std::move(allocated), buffer_size, kept);
  }
  if (allocated) *output = allocated.release();
  *output_length = written.length;
  if (!has_position(written.status)) return kConverted;
  return written.status == U_INVALID_CHAR_FOUND ? kUnmappable : kOutputFull;
}
