// From one charset to another without ICU.
#pragma once

#include <cstddef>
#include <optional>

#include "text/bytes.h"
#include "text/tables/charset.h"
#include "text/tables/table.h"

namespace text {

class Route {
 public:
  // None when one of the charsets is unknown, or has no tables yet. `size` is that of the text.
  static std::optional<Route> find(const Charset* from, const Charset* to, size_t size);

  // Converts as much as is certain and has room, and may overwrite the rest of the room. What is
  // refused is for converters to decide.
  Progress convert(Bytes text, unsigned char* out, size_t room) const;

  // Whether the converted text is known to be the same bytes.
  bool keeps(Bytes text) const;

  // The size of the converted text where it can be counted, and then all of it is converted.
  std::optional<size_t> count_bytes(Bytes text) const;

  // Between UTF-8, ISO-8859-1 and US-ASCII.
  bool is_simple() const { return (from_utf8_ || from_latin1_) && is_to_simple_; }

  // They are dropped unless this was called.
  void refuse_invisible() { invisible_ = Invisible::kRefused; }

  // How many UTF-16 units the text has, or at most has where only conversion would tell.
  size_t count_units(Bytes text) const;
  bool counts_exactly() const { return from_utf8_ || from_single_bytes_; }
  // How many a text has that became this one.
  size_t count_units(Bytes text, Bytes converted) const;

 private:
  Route(const Charset& from, const Charset& to);

  Progress convert_utf8(Bytes text, unsigned char* out, size_t room) const;
  Progress convert_by_utf8(Bytes text, unsigned char* out, size_t room) const;

  bool from_utf8_, to_utf8_;
  bool from_single_bytes_;
  bool from_latin1_, to_latin1_;
  bool is_to_simple_;
  const Table* from_ = nullptr;  // null for UTF-8
  const Table* to_ = nullptr;
  Invisible invisible_ = Invisible::kDropped;
};

}  // namespace text
