// Takes the place of the kernel services' output.
#include <qorviks.h>

#include <cstdarg>
#include <cstdio>
#include <utility>

#include "support/testing.h"

// To be found by its name when this is in a library.
extern "C" std::string recorded;
std::string recorded;

static void record(const std::string& report) {
  recorded += (recorded.empty() ? "" : "|") + report;
}

std::string take_diagnostics() { return std::exchange(recorded, {}); }

int imsg_print(int kind, const void* catalog_or_format, int index, ...) {
  const char* format = index == IMSG_FORMAT_INDEX
                           ? static_cast<const char*>(catalog_or_format)
                           : static_cast<const imsg_catalog_t*>(catalog_or_format)->texts[index];
  char text[1024];
  std::va_list args;
  va_start(args, index);
  std::vsnprintf(text, sizeof text, format, args);
  va_end(args);
  record(std::to_string(kind) + ": " + text);
  return -4;  // nobody counts on it
}

void pfm_assert_fail(const char* expression, const char* source, int /*line*/) {
  record(std::string(expression) + " @ " + source);
}
