#include "fast/header_text.h"

#include <algorithm>
#include <cstring>

#include <unicode/utf8.h>

namespace fast {

bool HeaderText::convert(const text::Charset& from, const text::Charset& to) {
  if (from.type() != UCNV_UTF8) {
    const text::Table* const table = from.get_table(text_.size());
    if (table == nullptr) return false;
    utf8_.resize(text::Table::most_utf8_per_byte * text_.size());
    const text::Progress progress = table->to_utf8(text_, utf8_.data(), utf8_.size());
    if (progress.stop != text::Stop::kDone) return false;
    text_ = Bytes(utf8_).first(progress.written);
  } else if (!text::is_utf8(text_)) {
    return false;
  }
  if (to.type() == UCNV_UTF8) return true;
  const text::Table* const table = to.get_table(text_.size());
  if (table == nullptr || text_.empty()) return false;
  return table->is_single_byte() ? convert_single_bytes(*table) : convert_and_mark(*table);
}

// Characters that ICU lets vanish are refused.
bool HeaderText::convert_single_bytes(const text::Table& table) {
  bytes_.resize(table.most_bytes_per_utf8_byte() * text_.size());
  const text::Progress progress =
      table.from_utf8(text_, bytes_.data(), bytes_.size(), text::Invisible::kRefused);
  text_ = Bytes(bytes_).first(progress.written);
  kind_ = Kind::kSingleByte;
  return progress.stop == text::Stop::kDone;
}

bool HeaderText::convert_and_mark(const text::Table& table) {
  const size_t most = table.most_bytes_per_utf8_byte() * text_.size();
  bytes_.resize(most + sizeof(text::Table::Code::bytes));
  marks_.resize(bytes_.size());
  size_t size = 0;
  for (size_t index = 0; index < text_.size();) {
    UChar32 character;
    U8_NEXT_UNSAFE(text_.data(), index, character);
    const text::Table::Code code = table.get_code(static_cast<char32_t>(character));
    if (code.size == 0) return false;
    std::memcpy(&bytes_[size], code.bytes, sizeof code.bytes);
    marks_[size] = character > 0xffff ? 2 : 1;
    size += code.size;
  }
  text_ = Bytes(bytes_).first(size);
  kind_ = Kind::kMarked;
  return true;
}

text::Reach HeaderText::reach_units(size_t begin, size_t max_units) const {
  if (is_utf8()) return text::reach_units(text_.subspan(begin), max_units);
  if (is_single_byte()) {
    const size_t reached = std::min(max_units, text_.size() - begin);
    return {reached, reached, true};
  }
  text::Reach reach{0, 0, true};
  for (size_t at = begin; at != text_.size(); at = end_character(at)) {
    if (marks_[at] > max_units - reach.units) break;
    reach.units += marks_[at];
    reach.bytes = end_character(at) - begin;
  }
  return reach;
}

}  // namespace fast
