#include "fast/output.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace fast {

void Output::grow(size_t bytes) {
  constexpr size_t room_for_nul = 1;
  const size_t wanted = std::max({size + bytes, expected, capacity + capacity / 2}) + room_for_nul;
  char* const moved = static_cast<char*>(std::realloc(far.get(), wanted));
  if (moved == nullptr) throw std::bad_alloc();
  if (!far) std::memcpy(moved, near, size);
  (void)far.release();
  far.reset(moved);
  begin = moved;
  capacity = wanted;
}

i18n::CString Output::release() {
  begin[size] = '\0';
  if (far) return i18n::shrink_c_string(std::move(far), capacity, size + 1);
  i18n::CString text = i18n::allocate_c_string(size + 1);
  std::memcpy(text.get(), near, size + 1);
  return text;
}

}  // namespace fast
