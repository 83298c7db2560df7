#include <qorviks.h>
#include <qorvii18n/i18n.hpp>

#include <cstring>

#include "core/string_buffer.h"

namespace i18n {

namespace {

constexpr const char* unit_name = "lib/i18n/i18n_mime_utils";

const char* or_empty(const char* text) { return text != nullptr ? text : ""; }

int length_of(const std::string& text) { return static_cast<int>(text.size()); }

}  // namespace

LineCycle::LineCycle(int max_line_length, const char* prefix, const char* suffix,
                     const char* line_break)
    : current_length(0), max_length(max_line_length), first_line(true), fold(or_empty(suffix)) {
  suffix_length = length_of(fold);
  fold += or_empty(line_break);
  line_break_length = length_of(fold) - suffix_length;
  fold += or_empty(prefix);
  if (!is_legal()) pfm_assert_fail("is_legal()", unit_name, __LINE__);
}

LineCycle::LineCycle(const LineCycle& other) = default;
LineCycle& LineCycle::operator=(const LineCycle& other) = default;
LineCycle::~LineCycle() = default;

bool LineCycle::is_legal() const { return get_num_bytes_avail() > 0; }

int LineCycle::get_num_bytes_avail() const { return max_length - length_of(fold); }

void LineCycle::move_line(StringBuffer<char>& buffer, int num_bytes) {
  if (num_bytes > get_num_bytes_avail()) {
    pfm_assert_fail("num_bytes <= get_num_bytes_avail()", unit_name, __LINE__);
  }
  if (num_bytes > get_room()) close_cycle(buffer);
  open_line(buffer);
  extend_line(num_bytes);
}

void LineCycle::open_line(StringBuffer<char>& buffer) {
  if (current_length == 0) start_cycle(buffer);
}

void LineCycle::start_cycle(StringBuffer<char>& buffer) {
  const int skipped = first_line ? suffix_length + line_break_length : suffix_length;
  const int length = length_of(fold) - skipped;
  buffer.add_bytes(fold.data() + skipped, length);
  extend_line(length);
  first_line = false;
}

void LineCycle::close_cycle(StringBuffer<char>& buffer) {
  buffer.add_bytes(fold.data(), suffix_length);
  current_length = 0;
}

char* LineCycle::put_fold(char* out) {
  std::memcpy(out, fold.data(), fold.size());
  current_length = length_of(fold) - suffix_length;
  return out + fold.size();
}

void LineCycle::set_prefix(const std::string& prefix) {
  const int before = suffix_length + line_break_length;
  fold.replace(static_cast<size_t>(before), std::string::npos, prefix);
}

}  // namespace i18n
