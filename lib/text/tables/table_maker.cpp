#include "text/tables/table_maker.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include <unicode/ucnv.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include "text/icu/converter.h"
#include "text/icu/converter_types.h"
#include "text/tables/gb18030.h"

namespace text {

class TableMaker {
 public:
  // Whether there can be tables.
  bool open(const char* charset) {
    converter_ = open_lossless(charset);
    if (!converter_ || !is_plain(ucnv_getType(converter_.get()))) return false;
    UErrorCode status = U_ZERO_ERROR;
    const char* const name = ucnv_getName(converter_.get(), &status);
    table_->is_gb18030_ = name != nullptr && std::strcmp(name, "gb18030") == 0;
    return true;
  }

  std::unique_ptr<const Table> make() {
    add_node(0);
    if (table_->is_gb18030_) add_numbered();
    if (!is_fit_) return nullptr;
    char32_t last = 0xffff;
    for (const Mapping& mapping : mappings_) last = std::max(last, mapping.character);
    table_->page_numbers_.resize(last / Table::page_size + 1);
    if (table_->longest_code_ > 2) {
      fill(table_->long_pages_);
    } else {
      fill(table_->short_pages_);
    }
    return std::move(table_);
  }

 private:
  struct Mapping {
    char32_t character;
    std::uint32_t code;
  };

  // The node for the byte after a prefix of that size.
  Table::Entry add_node(size_t depth) {
    const size_t index = table_->nodes_.size();
    table_->nodes_.emplace_back();
    for (unsigned byte = 0; byte < 256 && is_fit_; ++byte) {
      bytes_[depth] = static_cast<unsigned char>(byte);
      size_ = depth + 1;
      const Table::Entry entry = make_entry();
      table_->nodes_[index][byte] = entry;
    }
    return Table::lead_mark << Table::mark_shift | static_cast<Table::Entry>(index);
  }

  // What the bytes are. Makes nodes for what comes after leads.
  Table::Entry make_entry() {
    char16_t units[8];
    const size_t count = read(units, false);
    if (count == no_units) return Table::refused;
    UErrorCode status = U_ZERO_ERROR;
    const bool holds_bytes = ucnv_toUCountPending(converter_.get(), &status) != 0;
    ucnv_reset(converter_.get());
    if (count == 0 && holds_bytes) {
      if (table_->is_gb18030_ && size_ == 2) return Table::four_mark << Table::mark_shift;
      // A character by itself that is a lead as well is read by looking ahead.
      is_fit_ = is_fit_ && read(units, true) == no_units && size_ < sizeof bytes_;
      return is_fit_ ? add_node(size_) : Table::refused;
    }
    const bool is_pair = count == 2 && U16_IS_LEAD(units[0]);
    // Where bytes are several characters, what the first of those becomes depends on the others.
    is_fit_ = is_fit_ && !holds_bytes && (count == 1 || is_pair);
    if (!is_fit_ || U16_IS_TRAIL(units[0])) return Table::refused;
    const auto character = is_pair
                               ? static_cast<char32_t>(U16_GET_SUPPLEMENTARY(units[0], units[1]))
                               : char32_t{units[0]};
    is_fit_ = static_cast<size_t>(U8_LENGTH(character)) <= Table::most_utf8_per_byte * size_;
    add_mapping(character);
    return Table::make_entry(character);
  }

  static constexpr size_t no_units = static_cast<size_t>(-1);
  size_t read(char16_t* units, bool is_end) {
    UErrorCode status = U_ZERO_ERROR;
    const char* const bytes = reinterpret_cast<const char*>(bytes_);
    const char* source = bytes;
    char16_t* target = units;
    ucnv_toUnicode(converter_.get(), &target, units + 8, &source, bytes + size_, nullptr,
                   static_cast<UBool>(is_end), &status);
    check_memory(status);
    if (U_SUCCESS(status)) return static_cast<size_t>(target - units);
    ucnv_reset(converter_.get());
    return no_units;
  }

  // Whether the bytes are what is written for the character. Much is only ever read.
  bool is_written_so(char32_t character) {
    char bytes[sizeof bytes_];
    return write(character, bytes) == size_ && std::memcmp(bytes, bytes_, size_) == 0;
  }
  size_t write(char32_t character, char* bytes) {
    char16_t units[2];
    int32_t count = 0;
    U16_APPEND_UNSAFE(units, count, character);
    const char16_t* source = units;
    char* target = bytes;
    UErrorCode status = U_ZERO_ERROR;
    ucnv_fromUnicode(converter_.get(), &target, bytes + sizeof bytes_, &source, units + count,
                     nullptr, true, &status);
    check_memory(status);
    if (U_SUCCESS(status)) return static_cast<size_t>(target - bytes);
    ucnv_reset(converter_.get());
    return not_written;
  }
  static constexpr size_t not_written = static_cast<size_t>(-1);

  void add_mapping(char32_t character) {
    std::uint32_t code = 0;
    for (size_t i = 0; i < size_; ++i) code = code << 8 | bytes_[i];
    // What a number cannot say.
    const bool is_mark = code == (size_ == 2 ? 0xffff : 0xffffffff);
    if (is_mark || (size_ > 1 && bytes_[0] == 0) || !is_written_so(character)) return;
    mappings_.push_back({character, code});
    table_->longest_code_ = std::max(table_->longest_code_, size_);
    const auto utf8_size = static_cast<size_t>(U8_LENGTH(character));
    table_->most_bytes_per_utf8_byte_ =
        std::max(table_->most_bytes_per_utf8_byte_, (size_ + utf8_size - 1) / utf8_size);
    if (character < 0x80 && code == character) {
      table_->same_.add(static_cast<unsigned char>(character));
    }
  }

  // Four bytes up to U+FFFF.
  void add_numbered() {
    constexpr std::uint32_t count = 39420;
    table_->numbered_.resize(count);
    for (std::uint32_t number = 0; number < count; ++number) {
      const std::uint32_t code = gb18030::get_code(number);
      size_ = 4;
      for (size_t i = 0; i < size_; ++i) {
        bytes_[i] = static_cast<unsigned char>(code >> 8 * (3 - i));
      }
      char16_t units[8];
      if (read(units, true) != 1) continue;
      table_->numbered_[number] = units[0];
      add_mapping(units[0]);
    }
  }

  // The first page is empty, and stands for all others that have nothing.
  template <class Code>
  void fill(std::vector<Table::Page<Code>>& pages) {
    pages.emplace_back();
    const auto put = [&](char32_t character, Code code) {
      std::uint16_t& number = table_->page_numbers_[character / Table::page_size];
      if (number == 0) {
        number = static_cast<std::uint16_t>(pages.size());
        pages.emplace_back();
      }
      pages[number][character % Table::page_size] = code;
    };
    for (const Mapping& mapping : mappings_) {
      put(mapping.character, static_cast<Code>(mapping.code));
    }
    // What ICU lets vanish up to U+FFFF.
    constexpr char16_t candidates[][2] = {
        {0xad, 0xad},     {0x34f, 0x34f},   {0x61c, 0x61c},   {0x115f, 0x1160}, {0x17b4, 0x17b5},
        {0x180b, 0x180f}, {0x200b, 0x200f}, {0x202a, 0x202e}, {0x2060, 0x206f}, {0x3164, 0x3164},
        {0xfe00, 0xfe0f}, {0xfeff, 0xfeff}, {0xffa0, 0xffa0}, {0xfff0, 0xfff8}};
    make_strict(converter_.get());
    for (const auto& [first, last] : candidates) {
      for (char32_t c = first; c <= last; ++c) {
        char bytes[sizeof bytes_];
        if (write(c, bytes) == 0) put(c, Table::drop_code<Code>);
      }
    }
  }

  std::unique_ptr<Table> table_ = std::make_unique<Table>();
  ConverterPtr converter_;
  std::vector<Mapping> mappings_;
  bool is_fit_ = true;
  unsigned char bytes_[4] = {};  // of the character that is looked at
  size_t size_ = 0;
};

std::unique_ptr<const Table> make_table(const char* charset) {
  TableMaker maker;
  return maker.open(charset) ? maker.make() : nullptr;
}

}  // namespace text
