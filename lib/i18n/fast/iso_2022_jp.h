// ISO-2022-JP made of Shift_JIS: both number the characters of JIS X 0208 by rows and cells.
#pragma once

#include <string_view>

#include "fast/pieces.h"
#include "fast/table_pieces.h"

namespace fast {

class Iso2022JpPieces final : public Pieces {
 public:
  static constexpr const char* charset = "ISO_2022,locale=ja,version=0";  // ICU's own name

  // The route must be one to this charset.
  static constexpr const char* route_target = "Shift_JIS";
  Iso2022JpPieces(const text::Route& route, Bytes text)
      : Pieces(text.size() + text.size() / 8), shift_jis_(route, text, text.size()) {}

  Bytes next() override;

 private:
  static constexpr std::string_view to_jis = "\x1b$B", to_ascii = "\x1b(B";
  static constexpr size_t most_at_once = 512;

  unsigned char* write(unsigned char* out);

  TablePieces shift_jis_;
  Bytes piece_;             // of that, not yet written
  bool is_in_jis_ = false;  // the text written so far ends shifted
  // A character of one byte and one of two have two escape sequences, and there is one at the end.
  unsigned char bytes_[most_at_once * 3 + 2 * to_jis.size()];
};

}  // namespace fast
