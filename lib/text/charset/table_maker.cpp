#include "text/charset/table_maker.h"

#include <algorithm>
#include <cstring>
#include <new>

#include <unicode/ucnv.h>
#include <unicode/uset.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include "text/charset/converter.h"
#include "text/charset/converter_types.h"
#include "text/charset/gb18030.h"

namespace text {

namespace {

struct SetCloser {
  void operator()(USet* set) const { uset_close(set); }
};

}  // namespace

class TableMaker {
 public:
  // Whether there can be tables.
  bool open(const char* charset) {
    converter_ = open_converter(charset);
    if (!converter_ || !has_no_states(ucnv_getType(converter_.get()))) return false;
    make_lossless(converter_.get());
    UErrorCode status = U_ZERO_ERROR;
    const char* const name = ucnv_getName(converter_.get(), &status);
    table_->is_gb18030_ = name != nullptr && std::strcmp(name, "gb18030") == 0;
    return true;
  }

  std::unique_ptr<const Table> make() {
    add_node(0);
    if (!is_fit_) return nullptr;
    add_codes();
    if (!is_fit_) return nullptr;
    add_invisible();
    for (unsigned char c = 0; c < 0x80; ++c) {
      const Table::Code code = table_->get_code(c);
      const bool is_nul = c == 0 && write(0) == 0 && last_size_ == 1;
      const bool is_same = is_nul || (code.size == 1 && code.bytes[0] == c);
      if (is_same && table_->nodes_[0][c] == Table::make_entry(c)) table_->same_.add(c);
    }
    return std::move(table_);
  }

 private:
  // What the bytes of prefix_ are, as an entry. Makes nodes for what comes after leads.
  Table::Entry read() {
    char16_t units[8];
    const size_t count = read_units(units, false);
    if (count == no_units) return Table::refused;
    const bool holds_bytes = is_holding();
    ucnv_reset(converter_.get());
    if (count == 0 && holds_bytes) {
      if (table_->is_gb18030_ && prefix_size_ == 2) return Table::four_mark << Table::mark_shift;
      // A character by itself that is also a lead is read by looking ahead.
      is_fit_ = is_fit_ && read_units(units, true) == no_units && prefix_size_ < sizeof prefix_;
      return is_fit_ ? add_node(prefix_size_) : Table::refused;
    }
    if (holds_bytes) is_fit_ = false;
    const std::u16string_view text(units, count);
    if (count == 1 && !U16_IS_SURROGATE(units[0])) return check_size(units[0]);
    if (count == 2 && U16_IS_LEAD(units[0])) {
      return check_size(static_cast<char32_t>(U16_GET_SUPPLEMENTARY(units[0], units[1])));
    }
    return Table::refused;
  }

  Table::Entry check_size(char32_t character) {
    is_fit_ = is_fit_ && U8_LENGTH(character) <= Table::most_utf8_per_byte * prefix_size_;
    return Table::make_entry(character);
  }

  static constexpr size_t no_units = static_cast<size_t>(-1);
  size_t read_units(char16_t* units, bool is_end) {
    UErrorCode status = U_ZERO_ERROR;
    const char* source = prefix_;
    char16_t* target = units;
    ucnv_toUnicode(converter_.get(), &target, units + 8, &source, prefix_ + prefix_size_, nullptr,
                   static_cast<UBool>(is_end), &status);
    check_memory(status);
    if (U_SUCCESS(status)) return static_cast<size_t>(target - units);
    ucnv_reset(converter_.get());
    return no_units;
  }

  bool is_holding() const {
    UErrorCode status = U_ZERO_ERROR;
    return ucnv_toUCountPending(converter_.get(), &status) != 0;
  }

  // The node for the byte after a prefix of that size.
  Table::Entry add_node(size_t depth) {
    const size_t index = table_->nodes_.size();
    table_->nodes_.emplace_back();
    for (unsigned byte = 0; byte < 256 && is_fit_; ++byte) {
      prefix_[depth] = static_cast<char>(byte);
      prefix_size_ = depth + 1;
      const Table::Entry entry = read();
      table_->nodes_[index][byte] = entry;
    }
    return Table::lead_mark << Table::mark_shift | static_cast<Table::Entry>(index);
  }

  // The bytes of a character as one number, and their count in last_size_, which is 0 when there
  // are none.
  std::uint32_t write(char32_t character) {
    char16_t units[2];
    int32_t count = 0;
    U16_APPEND_UNSAFE(units, count, character);
    const char16_t* source = units;
    char bytes[8];
    char* target = bytes;
    UErrorCode status = U_ZERO_ERROR;
    ucnv_fromUnicode(converter_.get(), &target, bytes + sizeof bytes, &source, units + count,
                     nullptr, true, &status);
    check_memory(status);
    last_size_ = U_SUCCESS(status) ? static_cast<size_t>(target - bytes) : 0;
    was_written_ = U_SUCCESS(status);
    if (U_FAILURE(status)) ucnv_reset(converter_.get());
    std::uint32_t code = 0;
    for (const char* byte = bytes; byte != target; ++byte) {
      code = code << 8 | static_cast<unsigned char>(*byte);
    }
    return code;
  }

  struct Mapping {
    char32_t character;
    std::uint32_t code;
  };

  void add_codes() {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<USet, SetCloser> set(uset_openEmpty());
    if (!set) throw std::bad_alloc();
    ucnv_getUnicodeSet(converter_.get(), set.get(), UCNV_ROUNDTRIP_SET, &status);
    check_memory(status);
    // Where several characters are one, what one becomes depends on the next.
    is_fit_ = is_fit_ && U_SUCCESS(status) && uset_hasStrings(set.get()) == 0;
    if (!is_fit_) return;
    std::vector<Mapping> mappings;
    for (int32_t i = 0; i < uset_getRangeCount(set.get()); ++i) {
      UChar32 first, last;
      uset_getItem(set.get(), i, &first, &last, nullptr, 0, &status);
      if (table_->is_gb18030_) last = std::min(last, 0xffff);
      for (UChar32 c = first; c <= last; ++c) add_mapping(static_cast<char32_t>(c), mappings);
    }
    size_t pages = 0x10000 / Table::page_size;
    if (!mappings.empty()) {
      pages = std::max<size_t>(pages, mappings.back().character / Table::page_size + 1);
    }
    table_->page_numbers_.resize(pages);
    if (table_->longest_code_ > 2) {
      put_in_pages(mappings, table_->long_pages_);
    } else {
      put_in_pages(mappings, table_->short_pages_);
    }
  }

  void add_mapping(char32_t character, std::vector<Mapping>& mappings) {
    if (U_IS_SURROGATE(character)) return;
    const std::uint32_t code = write(character);
    const size_t size = last_size_;
    if (size == 0 || size > 4) return;
    unsigned char bytes[4];
    for (size_t i = 0; i < size; ++i) {
      bytes[i] = static_cast<unsigned char>(code >> 8 * (size - 1 - i));
    }
    if (table_->is_gb18030_ && size == 4) {
      const auto number = gb18030::get_number(bytes);
      if (!number || *number >= gb18030::first_number_beyond) return;
      auto& numbered = table_->numbered_;
      if (numbered.size() <= *number) numbered.resize(std::max<size_t>(*number + 1, 39420));
      prefix_size_ = std::copy_n(bytes, size, prefix_) - prefix_;
      char16_t units[8];
      const bool comes_back = read_units(units, true) == 1 && units[0] == character;
      if (!comes_back) return;
      numbered[*number] = static_cast<char16_t>(character);
    }
    Table::Entry entry;
    // What is written one way only, and what a number cannot say.
    const bool comes_back = table_->read_character({bytes, size}, entry) == size &&
                            entry == Table::make_entry(character);
    if (!comes_back || (size > 1 && bytes[0] == 0)) return;
    const bool is_mark = size == 2 ? code == 0xffff : code == 0xffffffff;
    if (is_mark) return;
    mappings.push_back({character, code});
    table_->longest_code_ = std::max(table_->longest_code_, size);
    const auto utf8_size = static_cast<size_t>(U8_LENGTH(character));
    table_->most_bytes_per_utf8_byte_ =
        std::max(table_->most_bytes_per_utf8_byte_, (size + utf8_size - 1) / utf8_size);
  }

  // The first page is empty, and all others that have nothing.
  template <class Code>
  void put_in_pages(const std::vector<Mapping>& mappings, std::vector<Table::Page<Code>>& pages) {
    pages.emplace_back();
    for (const Mapping& mapping : mappings)
      get_cell(mapping.character, pages) = static_cast<Code>(mapping.code);
  }
  template <class Code>
  Code& get_cell(char32_t character, std::vector<Table::Page<Code>>& pages) {
    std::uint16_t& number = table_->page_numbers_[character / Table::page_size];
    if (number == 0) {
      number = static_cast<std::uint16_t>(pages.size());
      pages.emplace_back();
    }
    return pages[number][character % Table::page_size];
  }

  // What ICU lets vanish up to U+FFFF.
  void add_invisible() {
    constexpr struct {
      char16_t first, last;
    } candidates[] = {{0xad, 0xad},     {0x34f, 0x34f},   {0x61c, 0x61c},   {0x115f, 0x1160},
                      {0x17b4, 0x17b5}, {0x180b, 0x180f}, {0x200b, 0x200f}, {0x202a, 0x202e},
                      {0x2060, 0x206f}, {0x3164, 0x3164}, {0xfe00, 0xfe0f}, {0xfeff, 0xfeff},
                      {0xffa0, 0xffa0}, {0xfff0, 0xfff8}};
    make_strict(converter_.get());
    for (const auto& range : candidates) {
      for (char32_t c = range.first; c <= range.last; ++c) {
        write(c);
        if (!was_written_ || last_size_ != 0) continue;
        if (table_->longest_code_ > 2) {
          get_cell(c, table_->long_pages_) = Table::drop_code<std::uint32_t>;
        } else {
          get_cell(c, table_->short_pages_) = Table::drop_code<std::uint16_t>;
        }
      }
    }
    make_lossless(converter_.get());
  }

  std::unique_ptr<Table> table_ = std::make_unique<Table>();
  ConverterPtr converter_;
  bool is_fit_ = true;
  char prefix_[4];
  size_t prefix_size_ = 0;
  size_t last_size_ = 0;
  bool was_written_ = false;
};

std::unique_ptr<const Table> make_table(const char* charset) {
  TableMaker maker;
  return maker.open(charset) ? maker.make() : nullptr;
}

}  // namespace text
