// A text converted from one charset to another, piece by piece. Where a piece ends means nothing,
// unlike the end of a chunk on the exact road.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

#include "core/bytes.h"

namespace fast {

using i18n::Bytes;

// Order of calls: next() until a piece is empty, then has_failed().
class Pieces {
 public:
  Pieces() = default;
  Pieces(const Pieces&) = delete;
  Pieces& operator=(const Pieces&) = delete;
  virtual ~Pieces() = default;

  // The next bytes of the converted text, valid until the next call. None when there are no more,
  // or when what follows cannot be converted.
  virtual Bytes next() = 0;
  virtual bool has_failed() const = 0;

  // How many bytes all pieces together will have, about.
  virtual size_t get_expected_size() const = 0;
};

// The text as it is: the charsets are the same, or it is ASCII and both have that.
class WholeText final : public Pieces {
 public:
  explicit WholeText(Bytes text) : text_(text) {}

  Bytes next() override { return std::exchange(text_, {}); }
  bool has_failed() const override { return false; }
  size_t get_expected_size() const override { return text_.size(); }

 private:
  Bytes text_;
};

// For names that differ. Null when the fast road does not go from one of these charsets to the
// other.
std::unique_ptr<Pieces> open_pieces(const char* from_charset, const char* to_charset, Bytes text);

// ICU takes these spellings for UTF-8 without looking them up.
inline constexpr std::string_view utf8_names[] = {"UTF-8", "utf-8", "UTF8", "utf8"};
bool is_utf8_name(const char* charset);

}  // namespace fast
