// Body text, written line by line as its bytes come.
#pragma once

#include <cstddef>
#include <string>

#include "core/bytes.h"
#include "fast/output.h"
#include "i18n_mime_encoding/line_limits.h"
#include "transfer/base64.h"
#include "transfer/qp_forms.h"

namespace fast {

using i18n::Bytes;

// Each line after the first has that much less room: its line break counts into it.
constexpr size_t body_break_size = std::char_traits<char>::length(i18n_mime::body_line_break);

// Order of calls, here and below: append() for each piece of the body, finish() once.
class Base64Body {
 public:
  explicit Base64Body(Output& output) : output_(output) {}

  void append(Bytes bytes);
  void finish();

  // Room for a body of so many bytes, as it is asked for.
  static size_t get_size(size_t bytes);

 private:
  static constexpr size_t longest_line = i18n_mime::max_base64_line;
  static constexpr size_t first_groups = longest_line / transfer::group_chars;
  static constexpr size_t first_bytes = first_groups * transfer::group_bytes;
  static constexpr size_t later_groups = (longest_line - body_break_size) / transfer::group_chars;
  static constexpr size_t later_chars = later_groups * transfer::group_chars;
  static constexpr size_t later_bytes = later_groups * transfer::group_bytes;

  void put_pending_line();

  Output& output_;
  // Bytes of the line in work. It is written when it is known whether more follows.
  unsigned char pending_[first_bytes];
  size_t pending_size_ = 0;
  size_t line_bytes_ = first_bytes;
};

class QuotedPrintableBody {
 public:
  // The table must escape '='.
  QuotedPrintableBody(const char* table, Output& output) : table_(table), output_(output) {}

  void append(Bytes bytes);
  void finish();

  // Room for so many characters of forms and the breaks between lines, as it is asked for.
  static size_t get_size(size_t forms);

 private:
  static constexpr size_t slice_size = 1024;  // an object has a place on stacks of 16 KiB
  static constexpr size_t mark_size = std::char_traits<char>::length(i18n_mime::soft_break_mark);
  static constexpr size_t longest_line = i18n_mime::max_quoted_printable_line;
  static constexpr size_t first_room = longest_line - mark_size;
  static constexpr size_t later_room = first_room - body_break_size;
  // Copied for each line, whatever of it counts: a few moves instead of a call.
  static constexpr size_t copied_size = longest_line;
  static_assert(first_room <= copied_size && copied_size <= later_room + transfer::form_slack);

  void append_slice(Bytes slice);
  // Writes the forms that fill lines. Those of the line in work stay, moved to the beginning.
  void put_full_lines();

  const char* table_;
  Output& output_;
  size_t room_ = first_room;  // for forms, on the line in work
  size_t forms_size_ = 0;
  char forms_[first_room + transfer::escape_size * slice_size + transfer::form_slack];
};

}  // namespace fast
