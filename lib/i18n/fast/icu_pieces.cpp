#include "fast/icu_pieces.h"

#include <algorithm>
#include <utility>

namespace fast {

IcuPieces::IcuPieces(i18n::ConverterPtr from_charset, i18n::ConverterPtr to_charset, Bytes text)
    : from(std::move(from_charset)),
      to(std::move(to_charset)),
      source(reinterpret_cast<const char*>(text.data())),
      source_end(source + text.size()),
      expected_size(text.size()) {
  i18n::make_strict(from.get());
  i18n::make_strict(to.get());
}

bool IcuPieces::is_independent(const UConverter* converter) {
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

Bytes IcuPieces::next() {
  Bytes piece;
  while (piece.empty() && !has_failed()) {
    if (!has_output_left) {
      if (has_read_all) break;
      read_units();
      if (has_failed()) break;
    }
    piece = write_bytes();
  }
  return has_failed() ? Bytes() : piece;
}

void IcuPieces::read_units() {
  constexpr std::ptrdiff_t most_at_once = 0x3fffffff;  // more than this ICU refuses
  const char* const limit = source + std::min(source_end - source, most_at_once);
  const bool is_last = limit == source_end;
  UChar* target = units;
  ucnv_toUnicode(from.get(), &target, units + unit_count, &source, limit, nullptr,
                 static_cast<UBool>(is_last), &status);
  unit = units;
  unit_end = target;
  if (status == U_BUFFER_OVERFLOW_ERROR) {
    status = U_ZERO_ERROR;
  } else {
    has_read_all = is_last;
  }
}

Bytes IcuPieces::write_bytes() {
  char* target = bytes;
  ucnv_fromUnicode(to.get(), &target, bytes + byte_count, &unit, unit_end, nullptr,
                   static_cast<UBool>(has_read_all), &status);
  has_output_left = status == U_BUFFER_OVERFLOW_ERROR;
  if (has_output_left) status = U_ZERO_ERROR;
  return {reinterpret_cast<const unsigned char*>(bytes), static_cast<size_t>(target - bytes)};
}

}  // namespace fast
