#include "fast/output.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace fast {

void Output::grow(size_t bytes) {
  constexpr size_t room_for_nul = 1;
  const size_t wanted =
      std::max({size_ + bytes, expected_, capacity_ + capacity_ / 2}) + room_for_nul;
  char* const moved = static_cast<char*>(std::realloc(far_.get(), wanted));
  if (moved == nullptr) throw std::bad_alloc();
  if (!far_) std::memcpy(moved, near_, size_);
  (void)far_.release();
  far_.reset(moved);
  begin_ = moved;
  capacity_ = wanted;
}

i18n::CString Output::release() {
  begin_[size_] = '\0';
  if (far_) return i18n::shrink_c_string(std::move(far_), capacity_, size_ + 1);
  i18n::CString text = i18n::allocate_c_string(size_ + 1);
  std::memcpy(text.get(), near_, size_ + 1);
  return text;
}

}  // namespace fast
