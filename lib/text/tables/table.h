// A charset as tables, for charsets without states in which each character stands for itself: what
// ICU's strict converter reads and writes there, without ICU.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "text/bytes.h"
#include "text/unicode/ascii_set.h"

namespace text {

// Why a conversion ended.
enum class Stop {
  kDone,     // at the end of the text
  kFull,     // no room for the next character
  kRefused,  // at what the tables do not have: invalid, incomplete, lacking, or mapped one way only
};

struct Progress {
  size_t read;
  size_t written;
  Stop stop;
};

// What becomes of characters that a charset lacks and that show nothing, like a soft hyphen: ICU's
// own stop callback lets them vanish.
enum class Invisible { kRefused, kDropped };

class Table {
 public:
  // Both convert as much as they can, and may overwrite the rest of the room. What is refused is
  // for a converter to decide, which can go on from there. All are safe in several threads at once.
  Progress to_utf8(Bytes text, unsigned char* out, size_t room) const;
  // The text must be well-formed.
  Progress from_utf8(Bytes utf8, unsigned char* out, size_t room, Invisible invisible) const;

  // Copies what a text begins with of ASCII that stands for itself here, and returns how much it
  // was.
  size_t copy_ascii(Bytes text, unsigned char* out) const;

  // The most that a byte of the charset takes in UTF-8, and the other way round.
  static constexpr size_t most_utf8_per_byte = 3;
  size_t most_bytes_per_utf8_byte() const { return most_bytes_per_utf8_byte_; }

  // Whether every character is one byte.
  bool is_single_byte() const { return nodes_.size() == 1; }

  // The bytes of a character, which are none where the tables have none.
  struct Code {
    size_t size;
    unsigned char bytes[4];
    bool is_invisible;  // it is lacking, and shows nothing
  };
  Code get_code(char32_t character) const;

 private:
  friend class TableMaker;
  class Writer;

  // An entry of a node holds a character in UTF-8, first byte lowest, and its length in the highest
  // byte where that is free: that of a fourth byte is more than any mark here. Or it leads to the
  // node for the byte that comes next.
  using Entry = std::uint32_t;
  using Node = std::array<Entry, 256>;
  static constexpr Entry refused = 0;
  static constexpr Entry lead_mark = 0x10;
  static constexpr Entry four_mark = 0x11;  // the first two of the four bytes of GB18030
  static constexpr unsigned mark_shift = 24;
  static Entry make_entry(char32_t character);

  // A code is the bytes of a character as one number, the last byte lowest.
  static constexpr size_t page_size = 64;
  template <class Code>
  using Page = std::array<Code, page_size>;
  template <class Code>
  static constexpr Code no_code = 0;
  template <class Code>
  static constexpr Code drop_code = static_cast<Code>(-1);

  size_t read_character(Bytes text, Entry& entry) const;
  Entry read_four(Bytes text) const;

  template <class Code>
  const std::vector<Page<Code>>& pages() const {
    if constexpr (sizeof(Code) == 2) return short_pages_;
    if constexpr (sizeof(Code) == 4) return long_pages_;
  }
  template <class Code>
  Code look_up(char32_t character) const;
  std::uint32_t find_code(char32_t character) const;

  AsciiSet same_;  // characters of ASCII that stand for themselves
  std::vector<Node> nodes_;
  std::vector<std::uint16_t> page_numbers_;  // by the character without its last six bits
  std::vector<Page<std::uint16_t>> short_pages_;
  std::vector<Page<std::uint32_t>> long_pages_;  // in place of the others, where codes are longer
  size_t longest_code_ = 1;
  size_t most_bytes_per_utf8_byte_ = 1;

  // GB18030 numbers all other characters one after the other.
  std::vector<char16_t> numbered_;
  bool is_gb18030_ = false;
};

}  // namespace text
