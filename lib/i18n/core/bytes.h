// Bytes that are borrowed.
#pragma once

#include <span>

namespace i18n {

using Bytes = std::span<const unsigned char>;

}  // namespace i18n
