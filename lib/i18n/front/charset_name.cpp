#include "front/charset_name.h"

namespace {

char to_ascii_lower(char byte) {
  return 'A' <= byte && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

}  // namespace

i18n::CString normalise_charset_name(const char* name) {
  i18n::CString normalised = i18n::allocate_c_string(std::strlen(name) + 1);
  char* out = normalised.get();
  for (; *name != '\0'; ++name) {
    if (*name != '-') *out++ = to_ascii_lower(*name);
  }
  *out = '\0';
  return normalised;
}
