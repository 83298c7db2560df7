#include "fast/icu_pieces.h"

#include <algorithm>
#include <utility>

#include "text/icu/limits.h"

namespace fast {

IcuPieces::IcuPieces(text::ConverterPtr from, text::ConverterPtr to, Bytes text)
    : Pieces(text.size()),
      from_(std::move(from)),
      to_(std::move(to)),
      source_(reinterpret_cast<const char*>(text.data())),
      source_end_(source_ + text.size()) {
  text::make_strict(from_.get());
  text::make_strict(to_.get());
}

Bytes IcuPieces::next() {
  Bytes piece;
  while (piece.empty() && !failed_) {
    if (!has_output_left_) {
      if (has_read_all_) break;
      failed_ = !read();
    }
    if (!failed_) piece = write();
  }
  return failed_ ? Bytes() : piece;
}

// The next units; in between there can be none.
bool IcuPieces::read() {
  const char* const limit =
      source_ + std::min<std::ptrdiff_t>(source_end_ - source_, text::most_units_at_once);
  const bool is_last = limit == source_end_;
  UErrorCode status = U_ZERO_ERROR;
  char16_t* target = unit_buffer_;
  ucnv_toUnicode(from_.get(), &target, unit_buffer_ + unit_count, &source_, limit, nullptr,
                 static_cast<UBool>(is_last), &status);
  text::check_memory(status);
  const bool is_full = status == U_BUFFER_OVERFLOW_ERROR;
  has_read_all_ = is_last && !is_full;
  units_ = {unit_buffer_, static_cast<size_t>(target - unit_buffer_)};
  return U_SUCCESS(status) || is_full;
}

Bytes IcuPieces::write() {
  UErrorCode status = U_ZERO_ERROR;
  char* target = bytes_;
  const char16_t* source = units_.data();
  ucnv_fromUnicode(to_.get(), &target, bytes_ + byte_count, &source, units_.data() + units_.size(),
                   nullptr, static_cast<UBool>(has_read_all_), &status);
  text::check_memory(status);
  units_.remove_prefix(static_cast<size_t>(source - units_.data()));
  has_output_left_ = status == U_BUFFER_OVERFLOW_ERROR;
  failed_ = U_FAILURE(status) && !has_output_left_;
  return {reinterpret_cast<const unsigned char*>(bytes_), static_cast<size_t>(target - bytes_)};
}

}  // namespace fast
