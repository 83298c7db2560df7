// Takes the place of ICU's default charset, and knows the texts of messages.
#include "support/testing.h"

#include <unicode/ucnv.h>

namespace {

const char* default_charset = "UTF-8";

}  // namespace

void set_default_charset(const char* name) { default_charset = name; }
const char* ucnv_getDefaultName() { return default_charset; }

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
