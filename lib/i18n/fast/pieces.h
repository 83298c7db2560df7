// A text converted from one charset to another, piece by piece. Where a piece ends means nothing,
// unlike the end of a chunk on the exact road.
#pragma once

#include <cstddef>
#include <utility>

#include "core/bytes.h"

namespace fast {

using i18n::Bytes;

// Order of calls: next() until a piece is empty, then has_failed().
class Pieces {
 public:
  // About how many bytes all pieces together will have.
  explicit Pieces(size_t expected_size) : expected_size_(expected_size) {}
  Pieces(const Pieces&) = delete;
  Pieces& operator=(const Pieces&) = delete;
  virtual ~Pieces() = default;

  // The next bytes of the converted text, valid until the next call. None when there are no more,
  // or when what follows cannot be converted.
  virtual Bytes next() = 0;
  bool has_failed() const { return failed_; }
  size_t get_expected_size() const { return expected_size_; }

 protected:
  bool failed_ = false;

 private:
  const size_t expected_size_;
};

// The text as it is.
class WholeText final : public Pieces {
 public:
  explicit WholeText(Bytes text) : Pieces(text.size()), text_(text) {}

  Bytes next() override { return std::exchange(text_, {}); }

 private:
  Bytes text_;
};

}  // namespace fast
