#include "conversion/ucnv_chunk_iter.h"

#include <algorithm>
#include <cstdio>

#include "charset/diagnostics.h"
#include "conversion/hex_dump.h"
#include "core/offsets.h"
#include "text/icu/limits.h"

namespace i18n {

template <class In, class Out>
UcnvChunkIter<In, Out>::UcnvChunkIter(const char* charset, int chunk_units)
    : chunk_size(chunk_units),
      converter(open_ucnv_converter(charset)),
      source(nullptr),
      in_begin(nullptr),
      in_end(nullptr),
      chunk_source(nullptr),
      source_limit(nullptr),
      target_limit(nullptr),
      offsets_target(nullptr),
      flush(true),
      target(nullptr),
      offsets_end(nullptr),
      report_errors(true) {
  if (!converter) {
    set_error();
    return;
  }
  const auto units = static_cast<size_t>(chunk_units);
  target_buffer = std::make_unique_for_overwrite<Out[]>(units);
  target = target_buffer.get();
  target_limit = target + chunk_size;
  offsets_buffer = allocate_offsets(units);
  offsets_target = offsets_end = offsets_buffer.get();
}

template <class In, class Out>
UcnvChunkIter<In, Out>::~UcnvChunkIter() = default;

template <class In, class Out>
void UcnvChunkIter<In, Out>::borrow_in_str(std::basic_string_view<In> text) {
  in_begin = source = chunk_source = text.data();
  in_end = source_limit = in_begin + text.size();
}

template <class In, class Out>
bool UcnvChunkIter<In, Out>::has_in_str() {
  return source != nullptr;
}

template <class In, class Out>
bool UcnvChunkIter<In, Out>::has_next_chunk() {
  return has_next() || !flush || source_limit != in_end;
}

template <class In, class Out>
void UcnvChunkIter<In, Out>::next_chunk() {
  convert_after(0);
  make_chunk(get_produced());
}

template <class In, class Out>
void UcnvChunkIter<In, Out>::convert_after(std::int32_t kept) {
  target = target_buffer.get() + kept;
  offsets_target = offsets_end = offsets_buffer.get() + kept;
  chunk_source = source;
  source_limit = source + std::min<std::ptrdiff_t>(in_end - source, text::most_units_at_once);
  if (target < target_limit) {
    clear_offsets(offsets_target, static_cast<size_t>(target_limit - target));
  }
  ucnv_set_ok();
  ucnv_convert();
}

template <class In, class Out>
UBool UcnvChunkIter<In, Out>::is_last_call() const {
  return static_cast<UBool>(flush && source_limit == in_end);
}

template <class In, class Out>
std::int32_t UcnvChunkIter<In, Out>::get_produced() const {
  return static_cast<std::int32_t>(target - target_buffer.get());
}

template <class In, class Out>
void UcnvChunkIter<In, Out>::make_chunk(std::int32_t units) {
  offsets_end = offsets_buffer.get() + units;
  *offsets_end = static_cast<std::int32_t>(source - chunk_source);
  const auto size = static_cast<size_t>(units);
  this->chunk = {{target_buffer.get(), size}, {offsets_buffer.get(), size + 1}};
  if (!ucnv_is_ok()) set_error();
}

template <class In, class Out>
std::basic_string<In> UcnvChunkIter<In, Out>::get_units(std::int64_t begin,
                                                        std::int64_t count) const {
  const std::int64_t size = in_end - in_begin;
  const std::int64_t first = std::clamp<std::int64_t>(begin, 0, size);
  const std::int64_t last = std::clamp<std::int64_t>(first + count, first, size);
  return std::basic_string<In>(in_begin + first, in_begin + last);
}

template <class In, class Out>
std::basic_string<In> UcnvChunkIter<In, Out>::trace_input_mb_char(int pos, int* start) {
  const std::int64_t base = chunk_source - in_begin;
  const auto size = static_cast<std::int64_t>(this->chunk.text.size());
  if (size == 0) {
    *start = printable_position(base);
    return {};
  }
  // What failed can lie before the chunk, when the converter held it over from the last input.
  const auto unit = this->chunk.offsets.begin() + std::clamp<std::int64_t>(pos, 0, size - 1);
  const auto other = std::find_if(unit, this->chunk.offsets.end(),
                                  [unit](std::int32_t offset) { return offset != *unit; });
  const std::int64_t begin = std::max<std::int64_t>(base + *unit, 0);
  const std::int64_t end =
      base + (other != this->chunk.offsets.end() ? *other : source - chunk_source);
  *start = printable_position(std::min<std::int64_t>(begin, in_end - in_begin));
  return get_units(begin, end - begin);
}

template class UcnvChunkIter<char, char16_t>;
template class UcnvChunkIter<char16_t, char>;

ToUnicodeIter::~ToUnicodeIter() = default;

void ToUnicodeIter::ucnv_convert() {
  UErrorCode code = static_cast<UErrorCode>(status);
  ucnv_toUnicode(converter.get(), &target, target_limit, &source, source_limit, offsets_target,
                 is_last_call(), &code);
  text::check_memory(code);
  status = code;
  if (!ucnv_is_ok() && report_errors) report_failure();
}

void ToUnicodeIter::report_failure() const {
  print_message(Message::kCannotConvertInput, hex_dump(get_error_bytes(5)).c_str(),
                printable_position(get_error_position()));
}

FromUnicodeIter::~FromUnicodeIter() = default;

void FromUnicodeIter::ucnv_convert() {
  UErrorCode code = static_cast<UErrorCode>(status);
  // Kept bytes can already take more than a limit that was lowered after they were kept.
  ucnv_fromUnicode(converter.get(), &target, std::max(target, target_limit), &source, source_limit,
                   offsets_target, is_last_call(), &code);
  text::check_memory(code);
  status = code;
  if (ucnv_is_ok() || !report_errors) return;
  const std::int64_t position = get_error_position();
  print_message(Message::kCannotConvertUnicode, hex_dump(get_in_units(position, 1)).c_str(),
                printable_position(position));
  std::fflush(stderr);
}

}  // namespace i18n
