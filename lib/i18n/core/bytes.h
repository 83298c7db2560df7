// Bytes that are borrowed.
#pragma once

#include "text/bytes.h"

namespace i18n {

using text::Bytes;

}  // namespace i18n
