// The last bytes of a text and the converters as they were before these, so that on an error, and
// only then, the way to it can be gone once more in small steps.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "text/stream/place.h"
#include "text/stream/source.h"
#include "text/stream/target.h"

namespace text {

// A moment between two reads.
struct Mark {
  std::uint64_t bytes = 0;    // that were read
  std::uint64_t units = 0;    // that they became, without `lead`
  std::uint64_t written = 0;  // bytes that these became
  Place place;                // of the next unit
  char16_t lead = 0;          // the last unit when its other half is still to come, else 0
  std::optional<std::uint64_t> lead_begin;  // its first byte, once the history does not have it
};

class History {
 public:
  static constexpr size_t max_read = 4096;

  // Whether the next prepare() drops the bytes of the lead, because so many came behind it.
  bool is_losing_lead(const Mark& now) const;

  // Before each read, of at most max_read bytes, when all units are written. It may throw
  // std::bad_alloc, and then has done nothing.
  void prepare(const Mark& now, const Source& source, const Target& target);
  // After each read: its bytes.
  void append(const char* bytes, size_t size);

  void clear();

  // From where on it is known what happened, far enough back for all that a converter may hold; and
  // the bytes since, and the converters as they were then.
  const Mark& begin() const { return oldest().mark; }
  std::uint64_t lead_begin() const;
  std::string bytes() const;
  Source copy_source(const Source& source) const;
  Target copy_target(const Target& target) const;

 private:
  // Without converters when they were in their initial state.
  struct Generation {
    Mark mark;
    std::optional<Source> source;
    std::optional<Target> target;
    size_t size = 0;
    char bytes[2 * max_read];
  };

  void begin_newest(const Mark& mark, std::optional<Source> source, std::optional<Target> target);
  const Generation& oldest() const { return generations_[has_two_ ? 1 - newest_ : newest_]; }

  // An older one is there as long as the newest is short.
  Generation generations_[2];
  size_t newest_ = 0;
  bool has_two_ = false;
};

}  // namespace text
