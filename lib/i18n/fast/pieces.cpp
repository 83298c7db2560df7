#include "fast/pieces.h"

#include <algorithm>
#include <utility>

#include "fast/icu_pieces.h"
#include "text/icu/converter.h"
#include "text/icu/converter_types.h"
#include "text/tables/route.h"
#include "text/unicode/latin1.h"
#include "text/unicode/utf16.h"
#include "text/unicode/utf8.h"

namespace fast {

namespace {

// What is converted without ICU.
class RoutePieces final : public Pieces {
 public:
  RoutePieces(const text::Route& route, Bytes text, size_t expected_size)
      : route_(route), text_(text), expected_size_(expected_size) {}

  // Characters that vanish can leave a piece empty that is not the last.
  Bytes next() override {
    text::Progress progress{};
    while (progress.written == 0 && !text_.empty() && !failed_) {
      progress = route_.convert(text_, converted_, sizeof converted_);
      text_ = text_.subspan(progress.read);
      failed_ = progress.stop == text::Stop::kRefused || progress.read == 0;
    }
    return failed_ ? Bytes() : Bytes(converted_, progress.written);
  }
  bool has_failed() const override { return failed_; }
  size_t get_expected_size() const override { return expected_size_; }

 private:
  text::Route route_;
  Bytes text_;
  size_t expected_size_;
  bool failed_ = false;
  unsigned char converted_[2048];
};

// What becomes of most texts.
size_t estimate_size(const text::Charset& from, const text::Charset& to, Bytes text) {
  const bool is_from_utf8 = from.type() == UCNV_UTF8;
  if (is_from_utf8) {
    return text::is_single_byte(to.type()) ? text::count_units(text) : text.size();
  }
  if (to.type() != UCNV_UTF8) return text.size();
  const size_t size = text::get_utf8_size(text);
  return text::is_single_byte(from.type()) ? size : text.size() + (size - text.size()) / 2;
}

std::unique_ptr<Pieces> open_with_icu(const char* from_charset, const char* to_charset,
                                      Bytes text) {
  text::ConverterPtr from = text::open_converter(from_charset);
  text::ConverterPtr to = text::open_converter(to_charset);
  if (!from || !to || !is_independent(from.get()) || !is_independent(to.get())) return nullptr;
  return std::make_unique<IcuPieces>(std::move(from), std::move(to), text);
}

bool is_unchanged(const text::Charset& from, const text::Charset& to, Bytes text) {
  if (from.type() != to.type()) return false;
  return from.type() == UCNV_LATIN_1 || (from.type() == UCNV_UTF8 && text::is_utf8(text));
}

}  // namespace

bool is_utf8_name(const char* charset) {
  return std::find(std::begin(utf8_names), std::end(utf8_names), charset) != std::end(utf8_names);
}

std::unique_ptr<Pieces> open_pieces(const char* from_charset, const char* to_charset, Bytes text) {
  const text::Charset* const from = text::find_charset(from_charset);
  const text::Charset* const to = text::find_charset(to_charset);
  if (from != nullptr && to != nullptr && is_unchanged(*from, *to, text)) {
    return std::make_unique<WholeText>(text);
  }
  const auto route = text::Route::find(from, to, text.size(), text::Invisible::kDropped);
  if (!route) return open_with_icu(from_charset, to_charset, text);
  return std::make_unique<RoutePieces>(*route, text, estimate_size(*from, *to, text));
}

}  // namespace fast
