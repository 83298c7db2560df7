#include "text/tables/table.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include "text/tables/gb18030.h"
#include "text/unicode/utf16.h"
#include "text/unicode/utf8.h"
#include "text/unicode/words.h"

namespace text {

namespace {

constexpr size_t entry_size = 4;

// Stores all four bytes, of which the first count.
void store_low_first(unsigned char* out, std::uint32_t entry) {
  if constexpr (std::endian::native == std::endian::big) entry = __builtin_bswap32(entry);
  std::memcpy(out, &entry, sizeof entry);
}

// How many bytes of UTF-8 an entry holds, 0 when it holds none.
size_t get_utf8_size(std::uint32_t entry) {
  const std::uint32_t top = entry >> 24;
  return top < 4 ? top : top >= 0x80 ? 4 : 0;
}

size_t get_code_size(std::uint32_t code) {
  return 1 + (code > 0xff ? 1 : 0) + (code > 0xffff ? 1 : 0) + (code > 0xffffff ? 1 : 0);
}

// Stores sizeof(Code) bytes, of which the first count, and returns the end of those.
template <class Code>
unsigned char* put_code(unsigned char* out, Code code) {
  const size_t size = get_code_size(code);
  Code first_high = static_cast<Code>(code << 8 * (sizeof code - size));
  if constexpr (std::endian::native == std::endian::little) {
    first_high = sizeof code == 2 ? __builtin_bswap16(static_cast<std::uint16_t>(first_high))
                                  : static_cast<Code>(__builtin_bswap32(first_high));
  }
  std::memcpy(out, &first_high, sizeof first_high);
  return out + size;
}

bool begins_with_ascii_word(const unsigned char* at, const unsigned char* end) {
  return static_cast<size_t>(end - at) >= word_size &&
         count_leading_ascii(load_word(at)) == word_size;
}

}  // namespace

Table::Entry Table::make_entry(char32_t character) {
  unsigned char bytes[entry_size] = {};
  size_t size = 0;
  U8_APPEND_UNSAFE(bytes, size, character);
  if (size < entry_size) bytes[entry_size - 1] = static_cast<unsigned char>(size);
  return static_cast<Entry>(bytes[0]) | static_cast<Entry>(bytes[1]) << 8 |
         static_cast<Entry>(bytes[2]) << 16 | static_cast<Entry>(bytes[3]) << 24;
}

Table::Entry Table::read_four(Bytes text) const {
  const auto number = gb18030::get_number(text.data());
  if (!number) return refused;
  if (*number < numbered_.size()) {
    const char16_t unit = numbered_[*number];
    return unit == 0 ? refused : make_entry(unit);
  }
  const auto character = gb18030::get_character_beyond(*number);
  return character ? make_entry(*character) : refused;
}

// The entry for the character at the beginning of a text, and how many bytes that has.
size_t Table::read_character(Bytes text, Entry& entry) const {
  entry = nodes_[0][text[0]];
  size_t size = 1;
  for (; entry >> mark_shift == lead_mark && size != text.size(); ++size) {
    entry = nodes_[entry & 0xffffff][text[size]];
  }
  if (entry >> mark_shift != four_mark) return size;
  entry = text.size() < 4 ? refused : read_four(text);
  return 4;
}

Progress Table::to_utf8(Bytes text, unsigned char* const out_begin, size_t room) const {
  const unsigned char* in = text.data();
  const unsigned char* const in_end = in + text.size();
  unsigned char* out = out_begin;
  unsigned char* const out_end = out + room;
  const auto stop = [&](Stop why) {
    return Progress{static_cast<size_t>(in - text.data()), static_cast<size_t>(out - out_begin),
                    why};
  };
  // Copies, as what is written could lie anywhere for all that the compiler knows.
  const Node* const nodes = nodes_.data();
  while (in != in_end) {
    if (begins_with_ascii_word(in, in_end)) {
      const auto most = static_cast<size_t>(std::min(in_end - in, out_end - out));
      const size_t run = copy_run(out, {in, most}, same_);
      in += run;
      out += run;
      if (in == in_end) break;
    }
    if (is_single_byte()) {
      const auto sure = std::min<std::ptrdiff_t>({in_end - in, (out_end - out) / 4, 32});
      const unsigned char* const sure_end = in + sure;
      for (; in != sure_end; ++in) {
        const Entry entry = nodes[0][*in];
        if (entry == refused) return stop(Stop::kRefused);
        store_low_first(out, entry);
        out += entry >> mark_shift;
      }
      if (sure != 0) continue;
    }
    // Some characters, before the next look for a run: of one byte or two, where there is room.
    const unsigned char* const piece_end = in + std::min<std::ptrdiff_t>(in_end - in, 16);
    const std::ptrdiff_t sure =
        std::min((out_end - out) / std::ptrdiff_t{entry_size}, piece_end - in - 1);
    for (std::ptrdiff_t count = 0; count < sure && in < piece_end - 1; ++count) {
      Entry entry = nodes[0][in[0]];
      const bool is_lead = entry >> mark_shift == lead_mark;
      if (is_lead) entry = nodes[entry & 0xffffff][in[1]];
      const size_t utf8_size = entry >> mark_shift;
      if (utf8_size - 1 >= 3) break;
      store_low_first(out, entry);
      in += is_lead ? 2 : 1;
      out += utf8_size;
    }
    while (in < piece_end) {
      Entry entry = nodes[0][*in];
      size_t size = 1;
      if (entry >> mark_shift == lead_mark && in_end - in > 1) {
        entry = nodes[entry & 0xffffff][in[1]];
        size = 2;
      }
      const bool goes_on = entry >> mark_shift == lead_mark || entry >> mark_shift == four_mark;
      if (goes_on) size = read_character({in, in_end}, entry);
      const size_t utf8_size = get_utf8_size(entry);
      if (utf8_size == 0) return stop(Stop::kRefused);
      if (static_cast<size_t>(out_end - out) >= entry_size) {
        store_low_first(out, entry);
      } else {
        if (static_cast<size_t>(out_end - out) < utf8_size) return stop(Stop::kFull);
        unsigned char bytes[entry_size];
        store_low_first(bytes, entry);
        std::memcpy(out, bytes, utf8_size);
      }
      in += size;
      out += utf8_size;
    }
  }
  return stop(Stop::kDone);
}

size_t Table::copy_ascii(Bytes text, unsigned char* out) const {
  return copy_run(out, text, same_);
}

template <class Code>
inline Code Table::look_up(char32_t character) const {
  return pages<Code>()[page_numbers_[character / page_size]][character % page_size];
}

std::uint32_t Table::find_code(char32_t character) const {
  if (character / page_size >= page_numbers_.size()) {
    return is_gb18030_ ? gb18030::get_code_beyond(character) : no_code<std::uint32_t>;
  }
  if (longest_code_ > 2) return look_up<std::uint32_t>(character);
  const auto code = look_up<std::uint16_t>(character);
  return code == drop_code<std::uint16_t> ? drop_code<std::uint32_t> : code;
}

Table::Code Table::get_code(char32_t character) const {
  const std::uint32_t code = find_code(character);
  Code result{};
  result.is_invisible = code == drop_code<std::uint32_t>;
  if (result.is_invisible) return result;
  if (code == no_code<std::uint32_t> && !(character == 0 && same_.has(0))) return result;
  result.size = static_cast<size_t>(put_code(result.bytes, code) - result.bytes);
  return result;
}

// Writes the characters of a text, whose units are given, as far as all goes well.
class Table::Writer {
 public:
  Writer(const Table& table, unsigned char* out, size_t room, Invisible invisible_ones)
      : table_(table),
        out_(out),
        out_end_(out + room),
        drops_(invisible_ones == Invisible::kDropped) {}

  unsigned char* out() const { return out_; }
  void skip(size_t written) { out_ += written; }
  size_t room() const { return static_cast<size_t>(out_end_ - out_); }

  // Returns why it ended, and moves unit to where.
  Stop write(const char16_t*& unit, const char16_t* end) {
    while (unit != end) {
      const char16_t* const sure_end = unit + count_sure(static_cast<size_t>(end - unit));
      if (table_.longest_code_ == 1) put_bytes(unit, sure_end);
      if (table_.longest_code_ == 2) put_codes<std::uint16_t>(unit, sure_end);
      if (table_.longest_code_ > 2) put_codes<std::uint32_t>(unit, sure_end);
      if (unit == end) break;
      const Stop stop = put_one(unit, end);
      if (stop != Stop::kDone) return stop;
    }
    return Stop::kDone;
  }

 private:
  // How many of the units have room whatever they are, with the slack of put_code().
  size_t count_sure(size_t units) const {
    const size_t longest = table_.longest_code_;
    if (units * longest + entry_size <= room()) return units;
    return room() < entry_size ? 0 : std::min(units, (room() - entry_size) / longest + 1);
  }

  // Both stop at what has no code.
  void put_bytes(const char16_t*& unit, const char16_t* end) {
    // Copies, as what is written could lie anywhere for all that the compiler knows.
    unsigned char* out = out_;
    const char16_t* at = unit;
    const std::uint16_t* const numbers = table_.page_numbers_.data();
    const Page<std::uint16_t>* const pages = table_.short_pages_.data();
    for (; at < end; ++at) {
      const std::uint16_t code = pages[numbers[*at / page_size]][*at % page_size];
      if (static_cast<std::uint16_t>(code - 1) >= 0xff) break;
      *out++ = static_cast<unsigned char>(code);
    }
    unit = at;
    out_ = out;
  }
  template <class Code>
  void put_codes(const char16_t*& unit, const char16_t* end) {
    unsigned char* out = out_;
    const char16_t* at = unit;
    const std::uint16_t* const numbers = table_.page_numbers_.data();
    const Page<Code>* const pages = table_.pages<Code>().data();
    for (; at < end; ++at) {
      const Code code = pages[numbers[*at / page_size]][*at % page_size];
      if (code == no_code<Code> || code == drop_code<Code>) break;
      out = put_code(out, code);
    }
    unit = at;
    out_ = out;
  }

  // Any character, with as much room as it needs.
  Stop put_one(const char16_t*& unit, const char16_t* end) {
    char32_t character = *unit;
    const bool is_pair = U16_IS_LEAD(character) && end - unit > 1;
    if (is_pair) character = static_cast<char32_t>(U16_GET_SUPPLEMENTARY(unit[0], unit[1]));
    const Code code = table_.get_code(character);
    if (code.size == 0 && !(code.is_invisible && drops_)) return Stop::kRefused;
    if (code.size > room()) return Stop::kFull;
    std::memcpy(out_, code.bytes, code.size);
    out_ += code.size;
    unit += is_pair ? 2 : 1;
    return Stop::kDone;
  }

  const Table& table_;
  unsigned char* out_;
  unsigned char* const out_end_;
  const bool drops_;
};

Progress Table::from_utf8(Bytes utf8, unsigned char* out, size_t room, Invisible invisible) const {
  // Where there is no ASCII, pieces get longer.
  constexpr size_t shortest_piece = kernel_stretch, longest_piece = 256;
  char16_t units[longest_piece + kernel_slack];
  Writer writer(*this, out, room, invisible);
  size_t index = 0;
  size_t piece = shortest_piece;
  const auto stop = [&](Stop why) {
    return Progress{index, static_cast<size_t>(writer.out() - out), why};
  };
  while (index != utf8.size()) {
    const Bytes rest = utf8.subspan(index);
    if (begins_with_ascii_word(rest.data(), rest.data() + rest.size())) {
      const size_t run =
          copy_run(writer.out(), rest.first(std::min(rest.size(), writer.room())), same_);
      writer.skip(run);
      index += run;
      if (run >= word_size) {
        piece = shortest_piece;
        continue;
      }
    }
    char16_t* end = units;
    const size_t size = put_some_units(end, utf8.subspan(index), piece);
    piece = std::min(2 * piece, longest_piece);
    const char16_t* unit = units;
    const Stop why = writer.write(unit, end);
    if (why != Stop::kDone) {
      for (const char16_t* at = units; at != unit; ++at) {
        if (!U16_IS_TRAIL(*at)) index += get_character_size(utf8.subspan(index));
      }
      return stop(why);
    }
    index += size;
  }
  return stop(Stop::kDone);
}

}  // namespace text
