#include "fast/header_text.h"

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
  bytes_.reserve(text_.size() + 4);
  marks_.reserve(text_.size() + 4);
  for (size_t index = 0; index < text_.size();) {
    UChar32 character;
    U8_NEXT_UNSAFE(text_.data(), index, character);
    // None for characters that ICU lets vanish, too.
    const text::Table::Code code = table->get_code(static_cast<char32_t>(character));
    if (code.size == 0) return false;
    bytes_.insert(bytes_.end(), code.bytes, code.bytes + code.size);
    marks_.push_back(character > 0xffff ? 2 : 1);
    marks_.resize(bytes_.size());
  }
  text_ = bytes_;
  return true;
}

text::Reach HeaderText::reach_units(size_t begin, size_t max_units) const {
  if (marks_.empty()) return text::reach_units(text_.subspan(begin), max_units);
  text::Reach reach{0, 0, true};
  for (size_t at = begin; at != text_.size(); at = end_character(at)) {
    if (marks_[at] > max_units - reach.units) break;
    reach.units += marks_[at];
    reach.bytes = end_character(at) - begin;
  }
  return reach;
}

}  // namespace fast
