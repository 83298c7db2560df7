#include "fast/unit_reader.h"

#include <algorithm>
#include <utility>

#include "text/icu/converter_types.h"
#include "text/icu/limits.h"

namespace fast {

bool is_independent(const UConverter* converter) {
  return text::is_independent(ucnv_getType(converter));
}

UnitReader::UnitReader(text::ConverterPtr converter, Bytes text)
    : converter_(std::move(converter)),
      source_(reinterpret_cast<const char*>(text.data())),
      source_end_(source_ + text.size()) {
  text::make_strict(converter_.get());
}

std::u16string_view UnitReader::read() {
  const char* const limit =
      source_ + std::min<std::ptrdiff_t>(source_end_ - source_, text::most_units_at_once);
  const bool is_last = limit == source_end_;
  UErrorCode status = U_ZERO_ERROR;
  char16_t* target = units_;
  ucnv_toUnicode(converter_.get(), &target, units_ + unit_count, &source_, limit, nullptr,
                 static_cast<UBool>(is_last), &status);
  text::check_memory(status);
  const bool is_full = status == U_BUFFER_OVERFLOW_ERROR;
  failed_ = U_FAILURE(status) && !is_full;
  is_at_end_ = is_last && !is_full;
  return {units_, static_cast<size_t>(target - units_)};
}

}  // namespace fast
