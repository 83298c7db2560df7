#include <qorviks.h>
#include <qorvii18n/i18n.hpp>

#include <algorithm>
#include <utility>

#include "core/string_buffer.h"

namespace i18n {

namespace {

constexpr const char* unit_name = "lib/i18n/i18n_mime_utils";

const char* or_empty(const char* text) { return text != nullptr ? text : ""; }

int length_of(const std::string& text) { return static_cast<int>(text.size()); }

void append(StringBuffer<char>& buffer, const std::string& text) {
  buffer.add_bytes(text.data(), length_of(text));
}

}  // namespace

LineCycle::LineCycle(int max_line_length, const char* prefix_text, const char* suffix_text,
                     const char* line_break_text)
    : current_length(0),
      max_length(max_line_length),
      first_line(true),
      prefix(or_empty(prefix_text)),
      suffix(or_empty(suffix_text)),
      line_break(or_empty(line_break_text)) {
  if (!is_legal()) pfm_assert_fail("is_legal()", unit_name, __LINE__);
}

LineCycle::LineCycle(const LineCycle& other) = default;
LineCycle& LineCycle::operator=(const LineCycle& other) = default;
LineCycle::~LineCycle() = default;

bool LineCycle::is_legal() const { return get_num_bytes_avail() > 0; }

int LineCycle::get_num_bytes_avail() const {
  return max_length - length_of(line_break) - length_of(suffix) - length_of(prefix);
}

void LineCycle::move_line(StringBuffer<char>& buffer, int num_bytes) {
  if (num_bytes > get_num_bytes_avail()) {
    pfm_assert_fail("num_bytes <= get_num_bytes_avail()", unit_name, __LINE__);
  }
  if (num_bytes > get_room()) close_cycle(buffer);
  if (current_length == 0) start_cycle(buffer);
  extend_line(num_bytes);
}

void LineCycle::append_pieces(StringBuffer<char>& buffer, const char* text, int length, int piece) {
  while (length > 0) {
    move_line(buffer, piece);
    const int others = std::min(get_room() / piece * piece, length - piece);
    extend_line(others);
    buffer.add_bytes(text, piece + others);
    text += piece + others;
    length -= piece + others;
  }
}

void LineCycle::start_cycle(StringBuffer<char>& buffer) {
  if (!first_line) {
    append(buffer, line_break);
    extend_line(length_of(line_break));
  }
  first_line = false;
  append(buffer, prefix);
  extend_line(length_of(prefix));
}

void LineCycle::close_cycle(StringBuffer<char>& buffer) {
  append(buffer, suffix);
  current_length = 0;
}

void LineCycle::set_prefix(std::string text) { prefix = std::move(text); }

}  // namespace i18n
