// Pieces that ICU converts, for charsets that are converted alike whatever the pieces are.
#pragma once

#include <unicode/ucnv.h>

#include "charset/converter.h"
#include "fast/pieces.h"

namespace fast {

class IcuPieces final : public Pieces {
 public:
  IcuPieces(i18n::ConverterPtr from_charset, i18n::ConverterPtr to_charset, Bytes text);

  // Whether a converter's output does not depend on how much of the text a call sees. Some look
  // ahead, or choose between forms by what they see.
  static bool is_independent(const UConverter* converter);

  Bytes next() override;
  bool has_failed() const override { return U_FAILURE(status); }
  size_t get_expected_size() const override { return expected_size; }

 private:
  static constexpr size_t unit_count = 1024;
  static constexpr size_t byte_count = 4096;

  void read_units();
  Bytes write_bytes();

  i18n::ConverterPtr from;
  i18n::ConverterPtr to;
  const char* source;
  const char* source_end;
  size_t expected_size;
  const UChar* unit = nullptr;  // the next one to write, up to unit_end
  const UChar* unit_end = nullptr;
  bool has_read_all = false;
  bool has_output_left = false;  // of the units that were read last
  UErrorCode status = U_ZERO_ERROR;
  UChar units[unit_count];
  char bytes[byte_count];
};

}  // namespace fast
