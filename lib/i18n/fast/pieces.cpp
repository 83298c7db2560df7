#include "fast/pieces.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "fast/icu_pieces.h"
#include "text/charset/converter.h"
#include "text/unicode/latin1.h"
#include "text/unicode/utf16.h"
#include "text/unicode/utf8.h"

namespace fast {

namespace {

// What is converted without ICU.
class DirectPieces final : public Pieces {
 public:
  using Convert = decltype(&text::utf8_to_latin1);

  // No byte gives more than two.
  DirectPieces(Convert convert, Bytes text, size_t size)
      : convert_(convert), text_(text), size_(size) {}

  Bytes next() override {
    const Bytes piece = text_.first(get_piece_size());
    unsigned char* const end = convert_(converted_, piece, text::get_kernels());
    failed_ = end == nullptr;
    if (failed_) return {};
    text_ = text_.subspan(piece.size());
    return {converted_, end};
  }
  bool has_failed() const override { return failed_; }
  size_t get_expected_size() const override { return size_; }

 private:
  static constexpr size_t most_bytes = 1024;

  // Characters are not cut; text in other charsets than UTF-8 can get shorter pieces for that.
  size_t get_piece_size() const {
    if (text_.size() <= most_bytes) return text_.size();
    size_t piece_size = most_bytes;
    while (piece_size > most_bytes - 3 && text::continues_character(text_[piece_size]))
      --piece_size;
    return piece_size;
  }

  Convert convert_;
  Bytes text_;
  size_t size_;
  bool failed_ = false;
  unsigned char converted_[2 * most_bytes + text::copy_slack];
};

enum class Kind { kUtf8, kLatin1, kAscii, kOther };

Kind get_kind(const UConverter* converter) {
  switch (ucnv_getType(converter)) {
    case UCNV_UTF8:
      return Kind::kUtf8;
    case UCNV_LATIN_1:
      return Kind::kLatin1;
    case UCNV_US_ASCII:
      return Kind::kAscii;
    default:
      return Kind::kOther;
  }
}

// A charset by its name; no converter is opened for the most frequent one.
struct Charset {
  explicit Charset(const char* name)
      : converter(is_utf8_name(name) ? nullptr : text::open_converter(name)),
        is_open(is_utf8_name(name) || converter != nullptr),
        kind(converter == nullptr ? Kind::kUtf8 : get_kind(converter.get())) {}

  text::ConverterPtr take_converter() {
    return converter ? std::move(converter) : text::open_converter("UTF-8");
  }

  text::ConverterPtr converter;
  bool is_open;
  Kind kind;
};

bool is_unchanged(Kind from, Kind to, Bytes text) {
  if (from == to && to == Kind::kUtf8) return text::is_utf8(text);
  if (from == to && to == Kind::kLatin1) return true;
  return text::is_ascii(text);
}

std::unique_ptr<Pieces> open_direct(Kind from, Kind to, Bytes text) {
  if (from == Kind::kUtf8 && to == Kind::kLatin1) {
    return std::make_unique<DirectPieces>(text::utf8_to_latin1, text, text::count_units(text));
  }
  if (from == Kind::kLatin1 && to == Kind::kUtf8) {
    return std::make_unique<DirectPieces>(text::latin1_to_utf8, text, text::get_utf8_size(text));
  }
  if (is_unchanged(from, to, text)) return std::make_unique<WholeText>(text);
  return nullptr;
}

std::unique_ptr<Pieces> open_with_icu(text::ConverterPtr from, text::ConverterPtr to, Bytes text) {
  if (!from || !to) return nullptr;  // one that opens as a rule does not when memory runs out
  if (!is_independent(from.get()) || !is_independent(to.get())) return nullptr;
  return std::make_unique<IcuPieces>(std::move(from), std::move(to), text);
}

}  // namespace

bool is_utf8_name(const char* charset) {
  return std::find(std::begin(utf8_names), std::end(utf8_names), charset) != std::end(utf8_names);
}

std::unique_ptr<Pieces> open_pieces(const char* from_charset, const char* to_charset, Bytes text) {
  Charset from(from_charset), to(to_charset);
  if (!from.is_open || !to.is_open) return nullptr;
  if (from.kind != Kind::kOther && to.kind != Kind::kOther) {
    return open_direct(from.kind, to.kind, text);
  }
  return open_with_icu(from.take_converter(), to.take_converter(), text);
}

}  // namespace fast
