// What is known about a charset, found by its name: without opening a converter and without a lock
// after the first time.
#pragma once

#include <atomic>
#include <cstddef>
#include <string>

#include <unicode/ucnv.h>

#include "text/tables/table.h"

namespace text {

class Charset {
 public:
  Charset(const char* name, UConverterType type);
  Charset(const Charset&) = delete;
  Charset& operator=(const Charset&) = delete;

  // ICU's own name, the same for all spellings.
  const char* name() const { return name_.c_str(); }
  UConverterType type() const { return type_; }

  // For a text of so many bytes. Null when the charset has no tables, when memory ran out, and as
  // long as there was less text than it takes for tables to pay.
  const Table* get_table(size_t size) const {
    const Table* const table = table_.load(std::memory_order_acquire);
    return table != nullptr || !can_have_table_.load(std::memory_order_relaxed) ? table
                                                                                : make(size);
  }

 private:
  const Table* make(size_t size) const;

  const std::string name_;
  const UConverterType type_;
  mutable std::atomic<bool> can_have_table_;
  mutable std::atomic<size_t> demand_ = 0;
  mutable std::atomic<const Table*> table_ = nullptr;
};

// Null when ICU does not know the name, for names with options and the empty name, which stand for
// something else each time, when memory ran out, and for a name too many: as names come from
// outside, there is a limit to how many are kept. Charsets are never destroyed.
const Charset* find_charset(const char* name);

}  // namespace text
