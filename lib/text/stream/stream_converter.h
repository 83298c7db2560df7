// Converts a text in pieces: bytes to UTF-16 a block at a time, these to bytes where they are
// wanted.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <qorvii18n/i18n_text.h>

#include "text/stream/error.h"
#include "text/stream/history.h"
#include "text/stream/shortcut.h"
#include "text/stream/source.h"
#include "text/stream/target.h"

namespace text {

// The caller's memory: what is left of it.
struct Input {
  const char* next;
  const char* end;
};
struct Output {
  char* next;
  char* end;
};

class StreamConverter {
 public:
  StreamConverter(Source source, Target target, Shortcut shortcut);
  StreamConverter(const StreamConverter&) = delete;
  StreamConverter& operator=(const StreamConverter&) = delete;

  // Advances both. Each step is done as a whole or, when memory runs out, not at all.
  i18n_text_status_t convert(Input& input, Output& output, bool is_last) noexcept;
  // Ends the text.
  void stop() noexcept;
  void reset() noexcept;

  // What ended the text, once all output before it was handed out.
  i18n_text_error_t error() const;

 private:
  // What is left to do with the text.
  enum class Stage {
    reset,   // all of it, and first the former text is to be forgotten
    read,    // to read its bytes
    finish,  // to bring the target back to its initial state
    over,    // nothing
  };

  bool hand_out(Output& output);
  void keep(const char* begin, const char* end);
  void begin();
  bool take_shortcut(Input& input, Output& output);
  void read(Input& input);
  void finish_reading();
  void accept(char16_t* end, Source::Result result);
  void check();
  void write(Output& output);
  void finish_writing();
  void note_lacking();
  void fail();

  Source source_;
  Target target_;
  Shortcut shortcut_;
  History history_;
  Mark now_;
  Stage stage_ = Stage::read;
  size_t most_read_ = History::max_read;  // at once, by the converters
  bool has_more_units_ = false;           // the source, than there was room for
  bool has_more_output_ = false;          // the target

  // What was read and is to be written, and what follows it.
  const char16_t* unit_ = units_;
  const char16_t* units_end_ = units_;
  bool is_checked_ = true;
  std::optional<Failure> failure_;

  // Output that is to be handed out: in the room below, or that of a failure.
  const char* kept_ = room_;
  const char* kept_end_ = room_;
  std::string failure_output_;
  i18n_text_error_t error_ = {};

  char room_[256];
  char16_t units_[History::max_read + 64];
};

}  // namespace text
