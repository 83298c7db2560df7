// Pieces that are converted by tables, without ICU.
#pragma once

#include "fast/pieces.h"
#include "text/tables/route.h"

namespace fast {

class TablePieces final : public Pieces {
 public:
  TablePieces(const text::Route& route, Bytes text, size_t expected_size)
      : Pieces(expected_size), route_(route), text_(text) {}

  Bytes next() override;

 private:
  text::Route route_;
  Bytes text_;  // not yet converted
  unsigned char converted_[1024];
};

}  // namespace fast
