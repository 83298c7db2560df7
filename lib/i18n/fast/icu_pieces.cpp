#include "fast/icu_pieces.h"

#include <utility>

namespace fast {

IcuPieces::IcuPieces(text::ConverterPtr from, text::ConverterPtr to, Bytes text)
    : reader_(std::move(from), text), to_(std::move(to)), expected_size_(text.size()) {
  text::make_strict(to_.get());
}

Bytes IcuPieces::next() {
  Bytes piece;
  while (piece.empty() && !failed_) {
    if (!has_output_left_) {
      if (reader_.has_read_all()) break;
      units_ = reader_.read();
    }
    piece = write();
    failed_ = failed_ || reader_.has_failed();
  }
  return failed_ ? Bytes() : piece;
}

Bytes IcuPieces::write() {
  UErrorCode status = U_ZERO_ERROR;
  char* target = bytes_;
  const char16_t* source = units_.data();
  ucnv_fromUnicode(to_.get(), &target, bytes_ + byte_count, &source, units_.data() + units_.size(),
                   nullptr, static_cast<UBool>(reader_.has_read_all()), &status);
  text::check_memory(status);
  units_.remove_prefix(static_cast<size_t>(source - units_.data()));
  has_output_left_ = status == U_BUFFER_OVERFLOW_ERROR;
  failed_ = U_FAILURE(status) && !has_output_left_;
  return {reinterpret_cast<const unsigned char*>(bytes_), static_cast<size_t>(target - bytes_)};
}

}  // namespace fast
