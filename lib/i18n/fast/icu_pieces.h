// Pieces that ICU converts, for charsets that are converted alike whatever the pieces are.
#pragma once

#include <string_view>

#include <unicode/ucnv.h>

#include "fast/pieces.h"
#include "fast/unit_reader.h"
#include "text/icu/converter.h"

namespace fast {

class IcuPieces final : public Pieces {
 public:
  IcuPieces(text::ConverterPtr from, text::ConverterPtr to, Bytes text);

  Bytes next() override;
  bool has_failed() const override { return failed_; }
  size_t get_expected_size() const override { return expected_size_; }

 private:
  static constexpr size_t byte_count = 4096;

  Bytes write();

  UnitReader reader_;
  text::ConverterPtr to_;
  size_t expected_size_;
  std::u16string_view units_;     // not yet written
  bool has_output_left_ = false;  // of units that the converter took
  bool failed_ = false;
  char bytes_[byte_count];
};

}  // namespace fast
