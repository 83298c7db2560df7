// Drives one private ICU converter over a text in chunks of bounded size.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <qorvii18n/i18n.hpp>

#include "conversion/char_iter.h"
#include "conversion/str_with_offsets.h"
#include "core/chunk_iter.h"
#include "core/in_str_keeper.h"
#include "text/icu/converter.h"

namespace i18n {

// Finds the input behind a unit of output.
template <class T>
class InputMBCharTracer {
 public:
  // The character of the input that unit pos of the current chunk came from. Where it begins in the
  // whole input goes through start.
  virtual std::basic_string<T> trace_input_mb_char(int pos, int* start) = 0;

 protected:
  InputMBCharTracer() = default;
  InputMBCharTracer(const InputMBCharTracer&) = default;
  InputMBCharTracer& operator=(const InputMBCharTracer&) = default;
  ~InputMBCharTracer() = default;
};

// Order of calls: construct, is_error(), an input, then next_chunk() and get_chunk() as long as
// has_next_chunk(). One in error after construction (the charset did not open) can only be
// destroyed.
//
// A conversion failure sets the error flag; the chunk then holds what was converted before it. The
// converter's own state goes on from chunk to chunk and from one input to the next.
template <class In, class Out>
class UcnvChunkIter : public UcnvErrorHandler,
                      public Error,
                      public ChunkIter<StrWithOffsets<Out>>,
                      public InStrKeeper<In>,
                      public InputMBCharTracer<In> {
 public:
  // chunk_units is the size of a chunk in units of Out.
  UcnvChunkIter(const char* charset, int chunk_units);
  UcnvChunkIter(const UcnvChunkIter&) = delete;
  UcnvChunkIter& operator=(const UcnvChunkIter&) = delete;
  ~UcnvChunkIter() override;

  void next_chunk() override;
  bool has_next_chunk() override;
  virtual void ucnv_convert() = 0;  // one conversion call over the cursors
  virtual bool has_in_str();

  void borrow_in_str(std::basic_string_view<In> text) override;
  std::basic_string<In> trace_input_mb_char(int pos, int* start) override;

  // Whether the input is the end of the text (true at first). Otherwise there is always a next
  // chunk, and the converter keeps an incomplete character for the next input.
  void set_flush(bool is_last) { flush = is_last; }
  void set_report_errors(bool report) { report_errors = report; }

  // The index of the unit just before the source cursor: where a failure is reported. -1 when
  // nothing of the input was consumed.
  std::int64_t get_error_position() const { return source - in_begin - 1; }

 protected:
  // The two halves of next_chunk(), around what a derived class does to the units in between. The
  // first kept units of the buffers are already there.
  void convert_after(std::int32_t kept);
  UBool is_last_call() const;  // as far as ICU is concerned
  std::int32_t get_produced() const;
  void make_chunk(std::int32_t units);

  std::basic_string<In> get_units(std::int64_t begin, std::int64_t count) const;

  std::int32_t chunk_size;
  text::ConverterPtr converter;
  const In* source;
  const In* in_begin;
  const In* in_end;
  const In* chunk_source;  // source when the current chunk's conversion began
  const In* source_limit;  // in_end, unless that is further than ICU reaches in one call
  Out* target_limit;
  std::int32_t* offsets_target;
  bool flush;
  std::unique_ptr<Out[]> target_buffer;
  Out* target;
  std::unique_ptr<std::int32_t[]> offsets_buffer;
  std::int32_t* offsets_end;
  bool report_errors;  // print messages about what cannot be converted
};

// Bytes of a charset to UTF-16.
class ToUnicodeIter : public UcnvChunkIter<char, char16_t> {
 public:
  using UcnvChunkIter::UcnvChunkIter;
  ~ToUnicodeIter() override;
  void ucnv_convert() override;

  // n input bytes from the error position on, fewer at the end of the input.
  std::string get_error_bytes(int n) const { return get_units(get_error_position(), n); }
  void report_failure() const;
};

// UTF-16 to bytes of a charset.
class FromUnicodeIter : public UcnvChunkIter<char16_t, char> {
 public:
  using UcnvChunkIter::UcnvChunkIter;
  ~FromUnicodeIter() override;
  void ucnv_convert() override;

  // n input units from index pos on, fewer at the end of the input.
  std::u16string get_in_units(std::int64_t pos, int n) const { return get_units(pos, n); }

  // Lowers the room of every later chunk to n bytes. Ignored unless 0 <= n < the size of a chunk.
  void set_target_limit(int n) {
    if (0 <= n && n < chunk_size) target_limit = target_buffer.get() + n;
  }

  CharIter<char> get_char_iter() const { return CharIter<char>(chunk); }
};

}  // namespace i18n
