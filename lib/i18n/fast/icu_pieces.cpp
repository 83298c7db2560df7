#include "fast/icu_pieces.h"

#include <utility>

namespace fast {

IcuPieces::IcuPieces(i18n::ConverterPtr from_charset, i18n::ConverterPtr to_charset, Bytes text)
    : reader(std::move(from_charset), text), to(std::move(to_charset)), expected_size(text.size()) {
  i18n::make_strict(to.get());
}

Bytes IcuPieces::next() {
  Bytes piece;
  while (piece.empty() && !failed) {
    if (!has_output_left) {
      if (reader.has_read_all()) break;
      units = reader.read();
    }
    piece = write();
    failed = failed || reader.has_failed();
  }
  return failed ? Bytes() : piece;
}

Bytes IcuPieces::write() {
  UErrorCode status = U_ZERO_ERROR;
  char* target = bytes;
  const char16_t* source = units.data();
  ucnv_fromUnicode(to.get(), &target, bytes + byte_count, &source, units.data() + units.size(),
                   nullptr, static_cast<UBool>(reader.has_read_all()), &status);
  units.remove_prefix(static_cast<size_t>(source - units.data()));
  has_output_left = status == U_BUFFER_OVERFLOW_ERROR;
  failed = U_FAILURE(status) && !has_output_left;
  return {reinterpret_cast<const unsigned char*>(bytes), static_cast<size_t>(target - bytes)};
}

}  // namespace fast
