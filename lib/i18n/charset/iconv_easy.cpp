// One-shot conversion of a whole string, through UTF-16.
#include <algorithm>
#include <limits>
#include <memory>

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

// Two units for a byte of input are enough for all charsets; these have one at most, but for what a
// character that an earlier call left unfinished adds.
size_t get_unit_capacity(const UConverter* converter, size_t input_length) {
  constexpr size_t unfinished = 2;
  const UConverterType type = ucnv_getType(converter);
  const bool has_one_at_most = type == UCNV_LATIN_1 || type == UCNV_US_ASCII || type == UCNV_UTF8;
  const size_t most = 2 * input_length;
  return std::min(has_one_at_most ? std::min(input_length + unfinished, most) : most,
                  max_target_units);
}

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

// Output of which every byte knows the unit it came from, in a buffer that is not owned.
struct TracedOutput {
  // A buffer can be far larger than any output of the text: offsets are kept for what the converter
  // can write at most, and more than any converter writes for a unit is not offered to it.
  TracedOutput(const UConverter* converter, size_t units, size_t buffer_size)
      : capacity(std::min({buffer_size, bytes_per_unit * units + slack, max_target_bytes})),
        offsets(i18n::offsets_for(capacity)),
        traced(std::min(capacity, largest_output(converter, units))) {
    i18n::clear_offsets(offsets.get(), traced);
  }

  static size_t largest_output(const UConverter* converter, size_t units) {
    constexpr size_t units_for_shifts = 10;
    return (units + units_for_shifts) * static_cast<size_t>(ucnv_getMaxCharSize(converter));
  }

  static constexpr size_t bytes_per_unit = 14;
  static constexpr size_t slack = 64;
  // What some charsets write before any text: ISO-2022-KR four bytes, even when there is none.
  static constexpr size_t header_size = 8;

  size_t capacity;
  WorkArea<int32_t, 2048> offsets;
  size_t traced;
  size_t length = 0;
};

UErrorCode write_output(UConverter* converter, TracedText& text, char* buffer,
                        TracedOutput& output) {
  UErrorCode status = U_ZERO_ERROR;
  const UChar* source = text.units.get();
  char* target = buffer;
  ucnv_fromUnicode(converter, &target, buffer + output.capacity, &source, source + text.length,
                   output.offsets.get(), true, &status);
  output.length = static_cast<size_t>(target - buffer);
  return status;
}

// The index of the input byte from which the last byte written came, 0 when that is not known.
size_t last_converted(TracedText& text, TracedOutput& output) {
  if (output.length == 0 || output.length > output.traced) return 0;
  const int32_t unit = output.offsets.get()[output.length - 1];
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

  TracedText text(get_unit_capacity(from->converter, input_length));
  size_t consumed;
  UErrorCode status = read_input(from->converter, input, input_length, text, &consumed);
  if (U_FAILURE(status)) {
    *error_position = consumed;
    return status == U_INDEX_OUTOFBOUNDS_ERROR || status == U_TRUNCATED_CHAR_FOUND ? kTruncatedInput
                                                                                   : kInvalidInput;
  }

  size_t buffer_size = caller_capacity;
  if (*output == nullptr) {
    buffer_size = TracedOutput::bytes_per_unit * text.length + TracedOutput::header_size;
  }
  TracedOutput traced(to->converter, text.length, buffer_size);
  if (*output == nullptr) *output = i18n::allocate_c_string(buffer_size).release();

  status = write_output(to->converter, text, *output, traced);
  *output_length = traced.length;
  if (status != U_INVALID_CHAR_FOUND && status != U_BUFFER_OVERFLOW_ERROR) return kConverted;
  *error_position = last_converted(text, traced);
  return status == U_INVALID_CHAR_FOUND ? kUnmappable : kOutputFull;
}
