// Tables made of what ICU's converter does.
#pragma once

#include <memory>

#include "text/tables/table.h"

namespace text {

// Null when the charset has no tables: it has states, or characters that only stand for something
// together with their neighbours. Throws std::bad_alloc.
std::unique_ptr<const Table> make_table(const char* charset);

}  // namespace text
