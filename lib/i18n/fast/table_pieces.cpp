#include "fast/table_pieces.h"

namespace fast {

// Characters that vanish can leave a piece empty that is not the last.
Bytes TablePieces::next() {
  text::Progress progress{};
  while (progress.written == 0 && !text_.empty() && !failed_) {
    progress = route_.convert(text_, converted_, sizeof converted_);
    text_ = text_.subspan(progress.read);
    failed_ = progress.stop == text::Stop::kRefused || progress.read == 0;
  }
  return failed_ ? Bytes() : Bytes(converted_, progress.written);
}

}  // namespace fast
