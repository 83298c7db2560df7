#include "fast/unit_reader.h"

#include <algorithm>
#include <utility>

namespace fast {

bool is_independent(const UConverter* converter) {
  switch (ucnv_getType(converter)) {
    case UCNV_SBCS:
    case UCNV_DBCS:
    case UCNV_MBCS:
    case UCNV_LATIN_1:
    case UCNV_US_ASCII:
    case UCNV_UTF8:
    case UCNV_EBCDIC_STATEFUL:
    case UCNV_ISO_2022:
      return true;
    default:
      return false;
  }
}

UnitReader::UnitReader(i18n::ConverterPtr from_charset, Bytes text)
    : converter(std::move(from_charset)),
      source(reinterpret_cast<const char*>(text.data())),
      source_end(source + text.size()) {
  i18n::make_strict(converter.get());
}

std::u16string_view UnitReader::read() {
  constexpr std::ptrdiff_t most_at_once = 0x3fffffff;  // more than this ICU refuses
  const char* const limit = source + std::min(source_end - source, most_at_once);
  const bool is_last = limit == source_end;
  UErrorCode status = U_ZERO_ERROR;
  char16_t* target = units;
  ucnv_toUnicode(converter.get(), &target, units + unit_count, &source, limit, nullptr,
                 static_cast<UBool>(is_last), &status);
  const bool is_full = status == U_BUFFER_OVERFLOW_ERROR;
  failed = U_FAILURE(status) && !is_full;
  is_at_end = is_last && !is_full;
  return {units, static_cast<size_t>(target - units)};
}

}  // namespace fast
