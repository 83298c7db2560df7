// Bytes that are borrowed.
#pragma once

#include <span>
#include <string_view>

namespace text {

using Bytes = std::span<const unsigned char>;

inline Bytes as_bytes(std::string_view bytes) {
  return {reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()};
}

}  // namespace text
