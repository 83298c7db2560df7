// Bytes as the fast road passes them on: borrowed.
#pragma once

#include <span>

namespace fast {

using Bytes = std::span<const unsigned char>;

}  // namespace fast
