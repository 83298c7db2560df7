#include <qorviks.h>
#include <qorvii18n/i18n.hpp>

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "core/string_buffer.h"

namespace i18n {

namespace {

constexpr const char* unit_name = "lib/i18n/i18n_mime_utils";

// Lengths are added up in 64 bits; a sum beyond an int is kept as the nearest one.
std::int32_t clamp_length(std::int64_t length) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(length, Limits::min(), Limits::max()));
}

std::unique_ptr<char[]> copy(const char* text) {
  const size_t size = std::strlen(text) + 1;
  auto copied = std::make_unique_for_overwrite<char[]>(size);
  std::copy_n(text, size, copied.get());
  return copied;
}

std::unique_ptr<char[]> copy_or_empty(const char* text) { return copy(text ? text : ""); }

std::int32_t measure(const std::unique_ptr<char[]>& text) {
  return clamp_length(static_cast<std::int64_t>(std::strlen(text.get())));
}

}  // namespace

LineCycle::LineCycle(int max_line_length, const char* line_prefix, const char* line_suffix,
                     const char* break_text)
    : current_length(0),
      max_length(max_line_length),
      first_line(true),
      prefix(copy_or_empty(line_prefix)),
      prefix_length(measure(prefix)),
      suffix(copy_or_empty(line_suffix)),
      suffix_length(measure(suffix)),
      line_break(copy_or_empty(break_text)),
      line_break_length(measure(line_break)) {
  if (!is_legal()) pfm_assert_fail("is_legal()", unit_name, __LINE__);
}

LineCycle::LineCycle(const LineCycle& other)
    : Error(other),
      current_length(other.current_length),
      max_length(other.max_length),
      first_line(other.first_line),
      prefix(copy(other.prefix.get())),
      prefix_length(other.prefix_length),
      suffix(copy(other.suffix.get())),
      suffix_length(other.suffix_length),
      line_break(copy(other.line_break.get())),
      line_break_length(other.line_break_length) {}

LineCycle& LineCycle::operator=(const LineCycle& other) {
  LineCycle copied(other);  // fails, if at all, before anything has changed
  Error::operator=(copied);
  current_length = copied.current_length;
  max_length = copied.max_length;
  first_line = copied.first_line;
  prefix = std::move(copied.prefix);
  prefix_length = copied.prefix_length;
  suffix = std::move(copied.suffix);
  suffix_length = copied.suffix_length;
  line_break = std::move(copied.line_break);
  line_break_length = copied.line_break_length;
  return *this;
}

LineCycle::~LineCycle() = default;

bool LineCycle::is_legal() {
  return std::int64_t{prefix_length} + suffix_length + line_break_length < max_length;
}

int LineCycle::get_num_bytes_avail() const {
  return clamp_length(std::int64_t{max_length} - line_break_length - suffix_length - prefix_length);
}

void LineCycle::move_line(StringBuffer<char>& buffer, int num_bytes) {
  if (num_bytes > get_num_bytes_avail()) {
    pfm_assert_fail("num_bytes <= get_num_bytes_avail()", unit_name, __LINE__);
  }
  const std::int64_t room = std::int64_t{max_length} - suffix_length - current_length;
  if (num_bytes > room) close_cycle(buffer);
  if (current_length == 0) start_cycle(buffer);
  current_length = clamp_length(std::int64_t{current_length} + num_bytes);
}

void LineCycle::start_cycle(StringBuffer<char>& buffer) {
  const std::int32_t break_length = first_line ? 0 : line_break_length;
  buffer.add_bytes(line_break.get(), break_length);
  buffer.add_bytes(prefix.get(), prefix_length);
  current_length = clamp_length(std::int64_t{current_length} + break_length + prefix_length);
  first_line = false;
}

void LineCycle::close_cycle(StringBuffer<char>& buffer) {
  buffer.add_bytes(suffix.get(), suffix_length);
  current_length = 0;
}

}  // namespace i18n
