// Takes the place of the kernel services' output and of ICU's default charset.
#include "support/testing.h"

#include <qorviks.h>
#include <unicode/ucnv.h>

#include <cstdarg>
#include <cstdio>
#include <utility>

namespace {

const char* default_charset = "UTF-8";
std::string recorded;

void record(const std::string& report) { recorded += (recorded.empty() ? "" : "|") + report; }

}  // namespace

void set_default_charset(const char* name) { default_charset = name; }
const char* ucnv_getDefaultName() { return default_charset; }

std::string take_diagnostics() { return std::exchange(recorded, {}); }

std::string input_failure(const char* bytes, int position) {
  return "6: Error converting input to Unicode\nThe first several bytes starting at the beginning "
         "of the problematic MB character have the following hexadecimal representation: " +
         std::string(bytes) + ".\nThe beginning of the problematic MB character is " +
         std::to_string(position) + " bytes away from the beginning of the input string.\n";
}

std::string target_failure(const char* bytes, int position, const char* unit) {
  return "6: Error converting unicode to output.\nThe hexadecimal representation of the "
         "problematic MB character is: " +
         std::string(bytes) + ".\nIt is " + std::to_string(position) +
         " bytes away from the beginning of the input string\nIts unicode hexadecimal "
         "representation is " +
         unit + ".\n";
}

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
  return 0;
}

void pfm_assert_fail(const char* expression, const char* source, int /*line*/) {
  record(std::string(expression) + " @ " + source);
}
