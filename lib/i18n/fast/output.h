// The string that the fast road writes: at its final place at once, unless it is short.
#pragma once

#include <cassert>
#include <cstddef>

#include "core/c_string.h"

namespace fast {

// Order of calls: get_room() and take_up_to() in turn, release() once.
class Output {
 public:
  // expected_size: about how long the string will be, in bytes. One that turns out longer is moved.
  explicit Output(size_t expected_size) : expected_(expected_size) {}
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  // Where the string goes on, with room for so many bytes.
  char* get_room(size_t bytes) {
    if (bytes >= capacity_ - size_) grow(bytes);
    return begin_ + size_;
  }
  // What was written up to end, in the room, belongs to the string.
  void take_up_to(const char* end) {
    size_ = static_cast<size_t>(end - begin_);
    assert(size_ < capacity_);
  }

  // The string, NUL-terminated. It can be taken once.
  i18n::CString release();

 private:
  void grow(size_t bytes);

  char near_[2048];  // many results are no longer, and are then allocated with their true size
  i18n::CString far_;
  char* begin_ = near_;
  size_t size_ = 0;
  size_t capacity_ = sizeof near_;  // always more than size, so that the NUL has room
  size_t expected_;
};

}  // namespace fast
