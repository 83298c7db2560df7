// Pulls text, converted from one charset to another, chunk by chunk.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <qorvii18n/i18n.hpp>

#include "conversion/char_iter.h"
#include "conversion/from_unicode_full_char_iter.h"
#include "conversion/ucnv_chunk_iter.h"
#include "core/chunk_iter.h"
#include "core/in_str_keeper.h"

namespace i18n {

// What the encoders pull from. Chunks are bytes of the target charset.
//
// Order of calls: construct, is_error(), the input, a limit if there is one, then next_chunk() and
// get_chunk() or get_char_iter(), until is_error() or not has_next_chunk().
class CharsetToCharsetIterPrototype : public ChunkIter<std::string_view>,
                                      public InStrKeeper<char>,
                                      public Error {
 public:
  // Caps every later chunk at n bytes. A value that makes no sense is ignored.
  virtual void set_limit_byte_size(int n) = 0;
  // Walks the current chunk one character at a time.
  virtual CharIter<char> get_char_iter() = 0;
};

// Two stages: bytes of the source charset to UTF-16, and UTF-16 to bytes of the target charset. A
// FromIter of FromUnicodeIter fills its chunks to the last byte; one of FromUnicodeFullCharIter
// ends them on whole characters.
//
// In error from construction when a charset does not open. A conversion failure is printed and sets
// the error flag; the chunk then holds what was converted before it. One object serves one input.
template <class FromIter>
class CharsetToCharsetChunkIter : public CharsetToCharsetIterPrototype,
                                  public InputMBCharTracer<char> {
 public:
  // How long a UTF-16 chunk and a target chunk are at most.
  CharsetToCharsetChunkIter(const char* from_charset, const char* to_charset, int chunk_units,
                            int chunk_bytes);
  ~CharsetToCharsetChunkIter() override;

  void next_chunk() override;
  bool has_next_chunk() override;
  void set_limit_byte_size(int n) override;
  CharIter<char> get_char_iter() override;
  void borrow_in_str(std::string_view input) override;
  std::string trace_input_mb_char(int pos, int* start) override;

 private:
  void fetch_unicode();
  void report_target_failure();

  // Destroyed from the last to the first.
  std::optional<FromIter> from_unicode;  // not made when the source charset does not open
  ToUnicodeIter to_unicode;
};

extern template class CharsetToCharsetChunkIter<FromUnicodeIter>;
extern template class CharsetToCharsetChunkIter<FromUnicodeFullCharIter>;

}  // namespace i18n
