// Pieces that ICU converts, for charsets that are converted alike whatever the pieces are.
#pragma once

#include <string_view>

#include <unicode/ucnv.h>

#include "fast/pieces.h"
#include "text/icu/converter.h"

namespace fast {

class IcuPieces final : public Pieces {
 public:
  IcuPieces(text::ConverterPtr from, text::ConverterPtr to, Bytes text);

  Bytes next() override;

 private:
  static constexpr size_t unit_count = 1024;
  static constexpr size_t byte_count = 4096;

  bool read();
  Bytes write();

  text::ConverterPtr from_, to_;
  const char* source_;
  const char* source_end_;
  bool has_read_all_ = false;
  std::u16string_view units_;     // not yet written
  bool has_output_left_ = false;  // of units that the converter took
  char16_t unit_buffer_[unit_count];
  char bytes_[byte_count];
};

}  // namespace fast
