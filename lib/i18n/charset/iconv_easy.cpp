// One-shot conversion that either works or does not.
#include <algorithm>
#include <limits>

#include <qorvii18n/i18n_iconv.h>

#include "charset/beginning.h"
#include "charset/charset_handle.h"
#include "charset/direct.h"
#include "charset/pivot.h"
#include "core/c_string.h"
#include "text/icu/converter.h"

namespace {

using i18n::Progress;

// ICU's functions for whole strings reset the converter first. That takes a tenth of the time for a
// short text, and the converter is mostly in its initial state anyway. So the text is converted
// without them, and they are left to start over when that fails. Compound text is not for this: ICU
// does not reset all of its converter.
bool can_start_without_reset(const UConverter* converter, bool is_unfinished) {
  return !is_unfinished && text::is_copyable(converter);
}

int32_t read_from_start(const i18n_charset_t& charset, std::string_view input, UChar* units,
                        UErrorCode* status) {
  UConverter* const converter = charset.converter;
  if (can_start_without_reset(converter, charset.has_unfinished_input) && !input.empty()) {
    const Progress progress = i18n::to_unicode(charset, input, units, input.size(), nullptr);
    if (U_SUCCESS(progress.status)) return static_cast<int32_t>(progress.produced);
  }
  const auto size = static_cast<int32_t>(input.size());
  const int32_t length = ucnv_toUChars(converter, units, size, input.data(), size, status);
  text::check_memory(*status);
  charset.has_unfinished_input = U_FAILURE(*status);
  return length;
}

int32_t write_from_start(const i18n_charset_t& charset, std::u16string_view text, char* output,
                         int32_t capacity, UErrorCode* status) {
  UConverter* const converter = charset.converter;
  if (can_start_without_reset(converter, charset.has_unfinished_output) && !text.empty() &&
      capacity > 0) {
    const auto size = static_cast<size_t>(capacity);
    const Progress progress = i18n::from_unicode(charset, text, output, size, nullptr);
    if (U_SUCCESS(progress.status)) {
      if (progress.produced < size) output[progress.produced] = '\0';
      return static_cast<int32_t>(progress.produced);
    }
  }
  const auto units = static_cast<int32_t>(text.size());
  const int32_t length = ucnv_fromUChars(converter, output, capacity, text.data(), units, status);
  text::check_memory(*status);
  charset.has_unfinished_output = U_FAILURE(*status);
  return length;
}

constexpr size_t easy_bytes_per_unit = 4;

int32_t clamp_to_int(int64_t value) {
  using Limits = std::numeric_limits<int32_t>;
  return static_cast<int32_t>(std::clamp<int64_t>(value, Limits::min(), Limits::max()));
}

}  // namespace

char* i18n_iconv_easy(const i18n_charset_t* from, const char* input, int input_length,
                      const i18n_charset_t* to, char* output, int64_t* output_length) {
  if (input_length < 0 || (input == nullptr && input_length > 0)) return nullptr;
  const std::string_view bytes(input, static_cast<size_t>(input_length));
  if (output == nullptr) {
    size_t length;
    i18n::CString result = i18n::convert_directly(*from, bytes, *to, easy_bytes_per_unit, &length);
    if (result && output_length != nullptr) *output_length = static_cast<int64_t>(length);
    if (result) return result.release();
  } else if (*output_length > 0) {
    const auto capacity = static_cast<size_t>(clamp_to_int(*output_length));
    const auto length = i18n::overlap(bytes, output, capacity)
                            ? std::nullopt
                            : i18n::convert_directly(*from, bytes, *to, output, capacity);
    if (length) {
      if (*length < capacity) output[*length] = '\0';
      *output_length = static_cast<int64_t>(*length);
      return output;
    }
  }
  const i18n::Beginning before_reading(*from, i18n::reading);
  i18n::Units buffer(bytes.size());
  UErrorCode status = U_ZERO_ERROR;
  const int32_t units = read_from_start(*from, bytes, buffer.get(), &status);
  if (U_FAILURE(status)) return nullptr;

  i18n::CString allocated;
  int32_t capacity;
  if (output != nullptr) {
    capacity = clamp_to_int(*output_length);
  } else {
    capacity = clamp_to_int(int64_t{easy_bytes_per_unit} * units + 1);
    allocated = i18n::allocate_c_string(static_cast<size_t>(capacity));
    output = allocated.get();
  }

  const i18n::Beginning before_writing(*to, i18n::writing);
  status = U_ZERO_ERROR;
  const std::u16string_view text(buffer.get(), static_cast<size_t>(units));
  const int32_t length = write_from_start(*to, text, output, capacity, &status);
  if (length < 0) return nullptr;  // longer than ICU can count
  if (output_length != nullptr) *output_length = length;
  if (U_FAILURE(status)) return nullptr;
  allocated.release();
  return output;
}
