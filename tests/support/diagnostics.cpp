#include "support/diagnostics.h"

#include <qorviks.h>

#include <cstdarg>
#include <cstdio>
#include <utility>

namespace {
std::vector<std::string> recorded;
}

std::vector<std::string> take_diagnostics() { return std::exchange(recorded, {}); }

int imsg_print(int kind, const void* catalog_or_format, int index, ...) {
  const char* format = index == IMSG_FORMAT_INDEX
                           ? static_cast<const char*>(catalog_or_format)
                           : static_cast<const imsg_catalog_t*>(catalog_or_format)->texts[index];
  char text[1024];
  std::va_list args;
  va_start(args, index);
  std::vsnprintf(text, sizeof text, format, args);
  va_end(args);
  recorded.push_back(std::to_string(kind) + ": " + text);
  return 0;
}

void pfm_assert_fail(const char* expression, const char* source, int /*line*/) {
  recorded.push_back(std::string(expression) + " @ " + source);
}
