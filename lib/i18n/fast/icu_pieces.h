// Pieces that ICU converts, for charsets that are converted alike whatever the pieces are.
#pragma once

#include <string_view>

#include <unicode/ucnv.h>

#include "charset/converter.h"
#include "fast/pieces.h"
#include "fast/unit_reader.h"

namespace fast {

class IcuPieces final : public Pieces {
 public:
  IcuPieces(i18n::ConverterPtr from_charset, i18n::ConverterPtr to_charset, Bytes text);

  Bytes next() override;
  bool has_failed() const override { return failed; }
  size_t get_expected_size() const override { return expected_size; }

 private:
  static constexpr size_t byte_count = 4096;

  Bytes write();

  UnitReader reader;
  i18n::ConverterPtr to;
  size_t expected_size;
  std::u16string_view units;     // not yet written
  bool has_output_left = false;  // of units that the converter took
  bool failed = false;
  char bytes[byte_count];
};

}  // namespace fast
