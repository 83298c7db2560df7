// Long Japanese texts to ISO-2022-JP, by a table in place of ICU's search through several.
#pragma once

#include <memory>

#include "fast/pieces.h"

namespace fast {

// Pieces of ISO-2022-JP, for names that differ. Null for other charsets, and for texts too short
// for the table to be made: that takes as long as ICU takes for some 100 KiB of text, once in a
// process. What is neither ASCII nor JIS X 0208 is a failure here, and left to ICU to convert.
std::unique_ptr<Pieces> open_iso_2022_jp(const char* from_charset, const char* to_charset,
                                         Bytes text);

}  // namespace fast
