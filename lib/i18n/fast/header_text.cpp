#include "fast/header_text.h"

#include <algorithm>
#include <cstring>

#include <unicode/utf8.h>

namespace fast {

bool HeaderText::convert(const text::Charset& from, const text::Charset& to) {
  if (from.type() != UCNV_UTF8) {
    const text::Table* const table = from.get_table(text_.size());
    if (table == nullptr) return false;
    const size_t most = text::Table::most_utf8_per_byte * text_.size();
    unsigned char* const utf8 = utf8_.get(most);
    const text::Progress progress = table->to_utf8(text_, utf8, most);
    if (progress.stop != text::Stop::kDone) return false;
    text_ = Bytes(utf8, progress.written);
  } else if (!text::is_utf8(text_)) {
    return false;
  }
  if (to.type() == UCNV_UTF8) return true;
  const text::Table* const table = to.get_table(text_.size());
  if (table == nullptr || text_.empty()) return false;
  return table->is_single_byte() ? convert_single_bytes(*table) : convert_and_mark(*table);
}

bool HeaderText::convert_single_bytes(const text::Table& table) {
  const size_t most = table.most_bytes_per_utf8_byte() * text_.size();
  unsigned char* const bytes = bytes_.get(most);
  size_t size = 0;
  while (!text_.empty()) {
    const text::Progress progress =
        table.from_utf8(text_, bytes + size, most - size, text::Invisible::kRefused);
    size += progress.written;
    text_ = text_.subspan(progress.read);
    if (progress.stop == text::Stop::kDone) break;
    if (kind_ != Kind::kMarked) std::memset(make_marks(most), 1, most);
    if (!skip_vanishing(table, size)) return false;
  }
  if (kind_ != Kind::kMarked) kind_ = Kind::kSingleByte;
  text_ = Bytes(bytes, size);
  return true;
}

bool HeaderText::convert_and_mark(const text::Table& table) {
  const size_t most =
      table.most_bytes_per_utf8_byte() * text_.size() + sizeof(text::Table::Code::bytes);
  unsigned char* const bytes = bytes_.get(most);
  std::memset(make_marks(most), 0, most);
  size_t size = 0;
  while (!text_.empty()) {
    size_t index = 0;
    UChar32 character;
    U8_NEXT_UNSAFE(text_.data(), index, character);
    const text::Table::Code code = table.get_code(static_cast<char32_t>(character));
    if (code.size == 0) {
      if (!skip_vanishing(table, size)) return false;
      continue;
    }
    text_ = text_.subspan(index);
    std::memcpy(bytes + size, code.bytes, sizeof code.bytes);
    marks_[size] = static_cast<unsigned char>(marks_[size] | (character > 0xffff ? 2 : 1));
    size += code.size;
  }
  text_ = Bytes(bytes, size);
  return true;
}

unsigned char* HeaderText::make_marks(size_t size) {
  kind_ = Kind::kMarked;
  return marks_ = mark_room_.get(size);
}

// What the text begins with, if that is a character that vanishes. At the end of the text there
// would be no byte to be marked.
bool HeaderText::skip_vanishing(const text::Table& table, size_t size) {
  size_t index = 0;
  UChar32 character;
  U8_NEXT_UNSAFE(text_.data(), index, character);
  text_ = text_.subspan(index);
  const bool is_full = marks_[size] >> unit_bits == 0xff >> unit_bits;
  marks_[size] = static_cast<unsigned char>(marks_[size] + (1 << unit_bits));
  return table.get_code(static_cast<char32_t>(character)).is_invisible && !is_full &&
         !text_.empty();
}

text::Reach HeaderText::reach_units(size_t begin, size_t max_units, size_t& vanished) const {
  if (kind_ == Kind::kUtf8) return text::reach_units(text_.subspan(begin), max_units);
  if (kind_ == Kind::kSingleByte) {
    const size_t reached = std::min(max_units, text_.size() - begin);
    return {reached, reached, true};
  }
  size_t at = begin;
  size_t left = max_units;
  for (; at != text_.size(); ++at) {
    const size_t vanishing = (marks_[at] >> unit_bits) - vanished;
    const size_t units = vanishing + (marks_[at] & ((1U << unit_bits) - 1));
    if (units > left) {
      vanished += std::min(vanishing, left);
      left -= std::min(vanishing, left);
      break;
    }
    vanished = 0;
    left -= units;
  }
  return {at - begin, max_units - left, true};
}

}  // namespace fast
