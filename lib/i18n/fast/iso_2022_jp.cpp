#include "fast/iso_2022_jp.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fast/unit_reader.h"
#include "text/icu/converter.h"
#include "text/tables/charset.h"

namespace fast {

namespace {

constexpr char canonical_name[] = "ISO_2022,locale=ja,version=0";
constexpr std::string_view to_jis = "\x1b$B";
constexpr std::string_view to_ascii = "\x1b(B";

// For each UTF-16 unit its code: ASCII as it is, JIS X 0208 as two bytes, 0 for all else. Entries
// are made of what ICU's converter writes, and only where it writes the same in both states.
class Codes {
 public:
  Codes() : codes_(0x10000) {
    const text::ConverterPtr converter = text::open_converter(canonical_name);
    if (!converter) return;
    text::make_strict(converter.get());
    for (char16_t unit = 0; unit < 0x80; ++unit) {
      if (unit != 0x0e && unit != 0x0f && unit != 0x1b) add(converter.get(), unit, unit);
    }
    for (unsigned first = 0x21; first <= 0x7e; ++first) {
      for (unsigned second = 0x21; second <= 0x7e; ++second) {
        const char jis[] = {'\x1b', '$', 'B', static_cast<char>(first), static_cast<char>(second)};
        UErrorCode status = U_ZERO_ERROR;
        char16_t unit[2];
        const int32_t count = ucnv_toUChars(converter.get(), unit, 2, jis, sizeof jis, &status);
        const bool is_one = U_SUCCESS(status) && count == 1;
        if (is_one) add(converter.get(), unit[0], static_cast<std::uint16_t>(first << 8 | second));
      }
    }
  }

  std::uint16_t operator[](char16_t unit) const { return codes_[unit]; }

  static bool is_jis(std::uint16_t code) { return code >= 0x100; }

 private:
  static std::string put(std::uint16_t code) {
    if (!is_jis(code)) return {static_cast<char>(code)};
    return {static_cast<char>(code >> 8), static_cast<char>(code & 0xff)};
  }

  // The unit must give this code between ASCII and between characters of JIS X 0208.
  void add(UConverter* converter, char16_t unit, std::uint16_t code) {
    constexpr char16_t kanji = 0x4e9c;
    constexpr std::string_view kanji_code = "0!";
    const auto join = [](std::initializer_list<std::string_view> parts) {
      std::string text;
      for (const std::string_view part : parts) text += part;
      return text;
    };
    const std::string text = put(code);
    const bool jis = is_jis(code);
    const std::string in_ascii =
        jis ? join({"a", to_jis, text, to_ascii, "a"}) : join({"a", text, "a"});
    const std::string in_jis =
        jis ? join({to_jis, kanji_code, text, kanji_code, to_ascii})
            : join({to_jis, kanji_code, to_ascii, text, to_jis, kanji_code, to_ascii});
    const bool is_certain = encode(converter, {{u'a', unit, u'a'}}) == in_ascii &&
                            encode(converter, {{kanji, unit, kanji}}) == in_jis;
    if (is_certain) codes_[unit] = code;
  }

  static std::string encode(UConverter* converter, const std::array<char16_t, 3>& units) {
    UErrorCode status = U_ZERO_ERROR;
    char bytes[32];
    const int32_t size = ucnv_fromUChars(converter, bytes, sizeof bytes, units.data(),
                                         static_cast<int32_t>(units.size()), &status);
    return U_SUCCESS(status) ? std::string(bytes, static_cast<size_t>(size)) : std::string();
  }

  std::vector<std::uint16_t> codes_;
};

// Kept until the process is gone: destructors and threads may still encode while it ends. Null when
// there is no memory for it.
const Codes* get_codes() {
  try {
    static const Codes& codes = *new Codes;
    return &codes;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

unsigned char* put(unsigned char* out, std::string_view text) {
  return std::copy(text.begin(), text.end(), out);
}

class Iso2022JpPieces final : public Pieces {
 public:
  Iso2022JpPieces(const Codes& codes, text::ConverterPtr from, Bytes text)
      : codes_(codes),
        reader_(std::move(from), text),
        expected_size_(text.size() + text.size() / 8) {}

  Bytes next() override {
    unsigned char* out = bytes_;
    while (out == bytes_ && !reader_.has_read_all()) {
      out = write(out, reader_.read());
      failed_ = out == nullptr || reader_.has_failed();
      if (failed_) return {};
      if (reader_.has_read_all() && is_in_jis_) out = put(out, to_ascii);
    }
    return {bytes_, out};
  }
  bool has_failed() const override { return failed_; }
  size_t get_expected_size() const override { return expected_size_; }

 private:
  // An escape sequence and a character of two bytes for each unit, and a sequence at the end.
  static constexpr size_t byte_count =
      UnitReader::unit_count * (to_jis.size() + 2) + to_ascii.size();

  // Null when there is no code for a unit.
  unsigned char* write(unsigned char* out, std::u16string_view units) {
    for (const char16_t unit : units) {
      const std::uint16_t code = codes_[unit];
      if (code == 0) return nullptr;
      const bool is_jis = Codes::is_jis(code);
      if (is_jis != is_in_jis_) out = put(out, is_jis ? to_jis : to_ascii);
      is_in_jis_ = is_jis;
      if (is_jis) *out++ = static_cast<unsigned char>(code >> 8);
      *out++ = static_cast<unsigned char>(code & 0xff);
    }
    return out;
  }

  const Codes& codes_;
  UnitReader reader_;
  size_t expected_size_;
  bool is_in_jis_ = false;  // the text written so far ends shifted
  bool failed_ = false;
  unsigned char bytes_[byte_count];
};

}  // namespace

std::unique_ptr<Pieces> open_iso_2022_jp(const char* from_charset, const char* to_charset,
                                         Bytes text) {
  constexpr size_t least_size = 16384;
  if (text.size() < least_size) return nullptr;
  const text::Charset* const to = text::find_charset(to_charset);
  if (to == nullptr || std::strcmp(to->name(), canonical_name) != 0) return nullptr;
  text::ConverterPtr from = text::open_converter(from_charset);
  if (!from || !is_independent(from.get())) return nullptr;
  const Codes* const codes = get_codes();
  return codes != nullptr ? std::make_unique<Iso2022JpPieces>(*codes, std::move(from), text)
                          : nullptr;
}

}  // namespace fast
