// Heap blocks and strings that leave the library: from malloc, released by the caller with the free
// function of the family that returned them.
#pragma once

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

namespace i18n {

struct MallocDeleter {
  void operator()(void* block) const { std::free(block); }
};
using CString = std::unique_ptr<char[], MallocDeleter>;

inline CString allocate_c_string(size_t size) {
  CString block(static_cast<char*>(std::malloc(size)));
  if (!block) throw std::bad_alloc();
  return block;
}

// Gives memory beyond size back, where the heap can.
inline CString cut_c_string(CString block, size_t size) {
  char* smaller = static_cast<char*>(std::realloc(block.get(), size));
  if (smaller == nullptr) return block;
  block.release();
  return CString(smaller);
}

// The same, where it is worth it.
inline CString shrink_c_string(CString block, size_t old_size, size_t size) {
  return old_size - size < old_size / 8 ? std::move(block) : cut_c_string(std::move(block), size);
}

inline CString copy_c_string(const char* text) {
  const size_t size = std::strlen(text) + 1;
  CString copy = allocate_c_string(size);
  std::memcpy(copy.get(), text, size);
  return copy;
}

}  // namespace i18n
