// Text as hexadecimal digits, for diagnostics.
#pragma once

#include <string>

namespace i18n {

// \x and lower-case digits without leading zeros for each unit: "\x1b\x24\x42".
template <class T>
std::string hex_dump(const std::basic_string<T>& text);

}  // namespace i18n
