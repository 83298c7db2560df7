#include <cstring>

#include <qorviks.h>
#include <qorvii18n/i18n.hpp>

#include "core/string_buffer.h"

namespace i18n {

namespace {

constexpr const char* unit_name = "lib/i18n/i18n_mime_utils";

std::unique_ptr<char[]> copy_of(const char* text, std::int32_t length) {
  const size_t size = static_cast<size_t>(length) + 1;
  auto copy = std::make_unique_for_overwrite<char[]>(size);
  std::memcpy(copy.get(), text, size);
  return copy;
}

const char* or_empty(const char* text) { return text != nullptr ? text : ""; }

std::int32_t length_of(const char* text) {
  return static_cast<std::int32_t>(std::strlen(or_empty(text)));
}

}  // namespace

LineCycle::LineCycle(int max_line_length, const char* prefix_text, const char* suffix_text,
                     const char* line_break_text)
    : current_length(0),
      max_length(max_line_length),
      first_line(true),
      prefix_length(length_of(prefix_text)),
      suffix_length(length_of(suffix_text)),
      line_break_length(length_of(line_break_text)) {
  prefix = copy_of(or_empty(prefix_text), prefix_length);
  suffix = copy_of(or_empty(suffix_text), suffix_length);
  line_break = copy_of(or_empty(line_break_text), line_break_length);
  if (!is_legal()) pfm_assert_fail("is_legal()", unit_name, __LINE__);
}

LineCycle::LineCycle(const LineCycle& other)
    : Error(other),
      current_length(other.current_length),
      max_length(other.max_length),
      first_line(other.first_line),
      prefix(copy_of(other.prefix.get(), other.prefix_length)),
      prefix_length(other.prefix_length),
      suffix(copy_of(other.suffix.get(), other.suffix_length)),
      suffix_length(other.suffix_length),
      line_break(copy_of(other.line_break.get(), other.line_break_length)),
      line_break_length(other.line_break_length) {}

LineCycle& LineCycle::operator=(const LineCycle& other) {
  if (this == &other) return *this;
  LineCycle copy(other);
  Error::operator=(copy);
  current_length = copy.current_length;
  max_length = copy.max_length;
  first_line = copy.first_line;
  prefix = std::move(copy.prefix);
  prefix_length = copy.prefix_length;
  suffix = std::move(copy.suffix);
  suffix_length = copy.suffix_length;
  line_break = std::move(copy.line_break);
  line_break_length = copy.line_break_length;
  return *this;
}

LineCycle::~LineCycle() = default;

bool LineCycle::is_legal() const {
  return prefix_length + suffix_length + line_break_length < max_length;
}

int LineCycle::get_num_bytes_avail() const {
  return max_length - line_break_length - suffix_length - prefix_length;
}

void LineCycle::move_line(StringBuffer<char>& buffer, int num_bytes) {
  if (num_bytes > get_num_bytes_avail()) {
    pfm_assert_fail("num_bytes <= get_num_bytes_avail()", unit_name, __LINE__);
  }
  if (num_bytes > get_room()) close_cycle(buffer);
  if (current_length == 0) start_cycle(buffer);
  extend_line(num_bytes);
}

void LineCycle::start_cycle(StringBuffer<char>& buffer) {
  if (!first_line) {
    buffer.add_bytes(line_break.get(), line_break_length);
    current_length += line_break_length;
  }
  first_line = false;
  buffer.add_bytes(prefix.get(), prefix_length);
  current_length += prefix_length;
}

void LineCycle::close_cycle(StringBuffer<char>& buffer) {
  buffer.add_bytes(suffix.get(), suffix_length);
  current_length = 0;
}

void LineCycle::set_prefix(const std::string& text) {
  prefix = copy_of(text.c_str(), static_cast<std::int32_t>(text.size()));
  prefix_length = static_cast<std::int32_t>(text.size());
}

int LineCycle::get_room() const { return max_length - suffix_length - current_length; }

void LineCycle::extend_line(int num_bytes) { current_length += num_bytes; }

}  // namespace i18n
