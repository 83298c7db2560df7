// A way without ICU for charsets that need none: UTF-8, and those that have tables. It takes what
// it is sure of and leaves the rest to the converters. Without it, texts become the same.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "text/bytes.h"
#include "text/stream/place.h"
#include "text/tables/charset.h"

namespace text {

class Shortcut {
 public:
  Shortcut(const char* from, const char* to);

  struct Step {
    size_t read = 0;
    size_t written = 0;
  };
  // Converts whole characters from the beginning of a text, between whole characters and in the
  // initial state of both charsets. It may change all of the room, of which there is at least
  // least_room, and moves the place past the characters.
  Step convert(Bytes text, std::span<unsigned char> room, Place& place);
  static constexpr size_t least_room = 256;

 private:
  Step read_utf8(Bytes text, std::span<unsigned char> room) const;
  Step write_utf8(Bytes text, std::span<unsigned char> room) const;
  Step convert_twice(Bytes text, std::span<unsigned char> room, Place& place);
  Step convert_bytes(Bytes text, std::span<unsigned char> room, Place& place) const;

  // Null for charsets of which nothing is known.
  const Charset* from_;
  const Charset* to_;

  // What a byte becomes that is a character in both, or no_byte. Made when it is needed.
  using ByteMap = std::array<std::uint16_t, 256>;
  static constexpr std::uint16_t no_byte = 0x100;
  static ByteMap make_byte_map(const Table& reader, const Table& writer);
  std::optional<ByteMap> byte_map_;
};

}  // namespace text
