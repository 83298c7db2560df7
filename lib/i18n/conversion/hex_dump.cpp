#include "conversion/hex_dump.h"

#include <charconv>
#include <type_traits>

namespace i18n {

namespace {
unsigned value_of(char byte) { return static_cast<unsigned char>(byte); }
unsigned value_of(char16_t unit) { return unit; }
}  // namespace

template <class T>
std::string hex_dump(const std::basic_string<T>& text) {
  std::string dump;
  for (const T unit : text) {
    char digits[2 * sizeof(T)];
    const auto result = std::to_chars(digits, digits + sizeof digits, value_of(unit), 16);
    dump += "\\x";
    dump.append(digits, result.ptr);
  }
  return dump;
}

template std::string hex_dump(const std::string& text);
template std::string hex_dump(const std::u16string& text);

}  // namespace i18n
