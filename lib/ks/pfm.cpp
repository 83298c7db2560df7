// Reports of failed internal checks.
#include <cstdio>

#include "qorviks.h"

[[gnu::weak]] void pfm_assert_fail(const char* expression, const char* source, int line) {
  std::fprintf(stderr, "assertion failed: %s, %s line %d\n", expression, source, line);
}
