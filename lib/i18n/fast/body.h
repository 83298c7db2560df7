// Body text, written line by line as its bytes come.
#pragma once

#include <cstddef>

#include "core/bytes.h"
#include "fast/output.h"
#include "i18n_mime_encoding/line_limits.h"
#include "transfer/base64.h"
#include "transfer/qp_forms.h"

namespace fast {

using i18n::Bytes;

// Each line after the first has that much less room: its line break counts into it.
constexpr size_t body_break_size = std::char_traits<char>::length(i18n_mime::body_line_break);
constexpr size_t first_line_size = i18n_mime::max_body_line;
constexpr size_t later_line_size = first_line_size - body_break_size;

class Base64Body {
 public:
  explicit Base64Body(Output& output) : output_(output) {}

  void append(Bytes bytes);
  void finish();

  // The most that a body of so many bytes takes.
  static size_t get_size(size_t bytes);

 private:
  static constexpr size_t later_chars =
      later_line_size / transfer::group_chars * transfer::group_chars;
  static constexpr size_t later_bytes = later_chars / transfer::group_chars * transfer::group_bytes;

  void put_pending_line();

  Output& output_;
  // Bytes of the line in work. It is written when it is known whether more follows.
  unsigned char pending_[first_line_size];
  size_t pending_size_ = 0;
  size_t line_bytes_ = first_line_size / transfer::group_chars * transfer::group_bytes;
};

class QuotedPrintableBody {
 public:
  // The table must escape '='.
  QuotedPrintableBody(const char* table, Output& output) : table_(table), output_(output) {}

  void append(Bytes bytes);
  void finish();

  // The most that so many forms take, with the breaks between lines.
  static size_t get_size(size_t forms);

 private:
  static constexpr size_t slice_size = 1024;  // an object has a place on stacks of 16 KiB
  static constexpr size_t mark_size = std::char_traits<char>::length(i18n_mime::soft_break_mark);
  static constexpr size_t later_room = later_line_size - mark_size;

  void append_slice(Bytes slice);
  // Writes the forms that fill lines. Those of the line in work stay, moved to the beginning.
  void put_full_lines();

  const char* table_;
  Output& output_;
  size_t room_ = first_line_size - mark_size;  // for forms, on the line in work
  size_t forms_size_ = 0;
  char forms_[first_line_size + transfer::escape_size * slice_size + transfer::form_slack];
};

}  // namespace fast
