// The program's own malloc family takes the place of the C library's for the whole process,
// operator new included, and passes on to it.
#include "allocations.h"

#include <cstdlib>

extern "C" {

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);

static size_t allocation_count;

void* malloc(size_t size) {
  ++allocation_count;
  return __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  ++allocation_count;
  return __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) {
  ++allocation_count;
  return __libc_realloc(block, size);
}

}  // extern "C"

namespace bench {

size_t count_allocations(const std::function<void()>& call) {
  const size_t before = allocation_count;
  call();
  return allocation_count - before;
}

}  // namespace bench
