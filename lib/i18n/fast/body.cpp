#include "fast/body.h"

#include <algorithm>
#include <cstring>

namespace fast {

namespace {

char* put_body_break(char* out) {
  std::memcpy(out, i18n_mime::body_line_break, body_break_size);
  return out + body_break_size;
}

}  // namespace

size_t Base64Body::get_size(size_t bytes) {
  return transfer::base64_lines_size(bytes, later_chars) + longest_line;
}

void Base64Body::append(Bytes bytes) {
  const size_t fitting = std::min(bytes.size(), line_bytes_ - pending_size_);
  std::copy_n(bytes.begin(), fitting, pending_ + pending_size_);
  pending_size_ += fitting;
  bytes = bytes.subspan(fitting);
  if (bytes.empty()) return;

  put_pending_line();
  const size_t full = (bytes.size() - 1) / later_bytes * later_bytes;
  if (full != 0) {
    char* out = output_.get_room(transfer::base64_lines_size(full, later_chars) + body_break_size);
    out = transfer::put_base64_lines(out, bytes.data(), full, later_chars);
    output_.take_up_to(put_body_break(out));
  }
  pending_size_ = bytes.size() - full;
  std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(full), pending_size_, pending_);
}

void Base64Body::put_pending_line() {
  char* out = output_.get_room(longest_line + body_break_size);
  out = transfer::put_base64(out, pending_, pending_size_);
  output_.take_up_to(put_body_break(out));
  pending_size_ = 0;
  line_bytes_ = later_bytes;
}

void Base64Body::finish() {
  char* const out = output_.get_room(longest_line);
  output_.take_up_to(transfer::put_base64(out, pending_, pending_size_));
}

size_t QuotedPrintableBody::get_size(size_t forms) {
  constexpr size_t shortest_line = later_room - (transfer::escape_size - 1);
  constexpr size_t fold_size = mark_size + body_break_size;
  return forms + (forms / shortest_line + 1) * fold_size + transfer::escape_size + copied_size;
}

void QuotedPrintableBody::append(Bytes bytes) {
  for (; !bytes.empty(); bytes = bytes.subspan(std::min(bytes.size(), slice_size))) {
    append_slice(bytes.first(std::min(bytes.size(), slice_size)));
  }
}

void QuotedPrintableBody::append_slice(Bytes slice) {
  const char* const end =
      transfer::put_forms(forms_ + forms_size_, table_, slice.data(), slice.size());
  forms_size_ = static_cast<size_t>(end - forms_);
  put_full_lines();
}

void QuotedPrintableBody::put_full_lines() {
  if (forms_size_ <= room_) return;
  char* out = output_.get_room(get_size(forms_size_));
  const char* next = forms_;
  const char* const end = forms_ + forms_size_;
  while (static_cast<size_t>(end - next) > room_) {
    const size_t size = transfer::cut_forms(next, room_);
    std::memcpy(out, next, copied_size);
    out += size;
    next += size;
    std::memcpy(out, i18n_mime::soft_break_mark, mark_size);
    out = put_body_break(out + mark_size);
    room_ = later_room;
  }
  output_.take_up_to(out);
  forms_size_ = static_cast<size_t>(end - next);
  std::memmove(forms_, next, forms_size_);
}

// A blank at the very end is escaped. It goes on the next line when its escape does not fit beside
// the blank itself.
void QuotedPrintableBody::finish() {
  if (forms_size_ != 0) {
    const char last = forms_[forms_size_ - 1];
    if (last == ' ' || last == '\t') {
      const bool fits = forms_size_ + transfer::escape_size <= room_;
      char* out = forms_ + forms_size_ - 1;
      if (!fits) {
        std::memcpy(out, i18n_mime::soft_break_mark, mark_size);
        out = put_body_break(out + mark_size);
      }
      out = transfer::put_escape(out, static_cast<unsigned char>(last));
      forms_size_ = static_cast<size_t>(out - forms_);
    }
  }
  char* const out = output_.get_room(forms_size_);
  std::memcpy(out, forms_, forms_size_);
  output_.take_up_to(out + forms_size_);
}

}  // namespace fast
