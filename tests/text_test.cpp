// UTF-8 and its neighbours: plain code beside ICU, and vector code beside plain code.
#include <gtest/gtest.h>
#include <unicode/ucnv.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <random>
#include <vector>

#include "text/unicode/latin1.h"
#include "text/unicode/utf16.h"
#include "text/unicode/utf8.h"

namespace {

std::vector<text::Kernels> get_kernels_that_are_there() {
  const auto all = text::get_all_kernels();
  std::vector<text::Kernels> there;
  std::ranges::copy_if(
      all, std::back_inserter(there), [](const auto& row) { return row.are_there(); });
  return there;
}
const std::vector<text::Kernels> all_kernels = get_kernels_that_are_there();

// The text behind others, so that it lies across two stretches.
bool is_utf8_by_all_kernels(const std::string& text) {
  const size_t before = text::kernel_stretch - 2;
  const std::string long_text = std::string(before, 'x') + text + std::string(34, 'y');
  const size_t plain = text::find_invalid(text::as_bytes(text), all_kernels.back());
  for (const text::Kernels& kernels : all_kernels) {
    const size_t found = text::find_invalid(text::as_bytes(long_text), kernels);
    EXPECT_EQ(found, plain == text.size() ? long_text.size() : before + plain);
  }
  return plain == text.size();
}

// Beside ICU's strict converter.
class Unicode : public testing::Test {
 protected:
  void SetUp() override {
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setToUCallBack(
        utf8.getAlias(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  }

  // Returns whether the text is well-formed.
  bool expect_as_icu(const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    UChar units[64];
    const auto count = static_cast<size_t>(ucnv_toUChars(utf8.getAlias(), units, std::size(units),
        text.data(), static_cast<int>(text.size()), &status));
    const bool is_valid = U_SUCCESS(status);
    const text::Bytes bytes = text::as_bytes(text);
    const text::Reach reach = text::reach_units(bytes, std::size(units));
    unsigned char room[std::size(units) + text::copy_slack];
    const unsigned char* const begin = room;
    const unsigned char* const latin1_end = text::utf8_to_latin1(room, bytes);
    const bool is_latin1 =
        is_valid && std::all_of(units, units + count, [](UChar unit) { return unit < 0x100; });
    bool same = is_utf8_by_all_kernels(text) == is_valid && reach.is_valid == is_valid &&
                (latin1_end != nullptr) == is_latin1 &&
                text::is_ascii(bytes) == (is_valid && count == text.size());
    if (is_valid) same &= reach.units == count && reach.bytes == text.size();
    if (is_latin1) {
      same &= std::equal(begin, latin1_end, units, units + count) &&
              text::get_latin1_size(bytes) == count;
    }
    EXPECT_TRUE(same) << testing::PrintToString(text);
    return is_valid;
  }

 private:
  UErrorCode opened = U_ZERO_ERROR;
  icu::LocalUConverterPointer utf8{ucnv_open("UTF-8", &opened)};
};

TEST_F(Unicode, EveryCharacterIsAsIcuHasIt) {
  for (UChar32 c = 0; c <= 0x10ffff && !HasFailure(); ++c) {
    if (U_IS_SURROGATE(c)) continue;
    char bytes[U8_MAX_LENGTH];
    size_t size = 0;
    U8_APPEND_UNSAFE(bytes, size, c);
    EXPECT_TRUE(expect_as_icu({bytes, size}));
  }
}

TEST_F(Unicode, EverySequenceOfBytesIsAsIcuHasIt) {
  const char later[] = {
      '\x7f', '\x80', '\x8f', '\x90', '\x9f', '\xa0', '\xbf', '\xc0', '\xff', 'z'};
  for (int lead = 0; lead < 256 && !HasFailure(); ++lead) {
    std::string text(1, static_cast<char>(lead));
    expect_as_icu(text);
    for (int second = 0; second < 256; ++second) {
      text.resize(2);
      text[1] = static_cast<char>(second);
      expect_as_icu(text);
      if (lead < 0xc0) continue;  // no more than the first byte is looked at
      for (const char third : later) {
        text.resize(3);
        text[2] = third;
        expect_as_icu(text);
        for (const char fourth : later) expect_as_icu(text + fourth);
      }
    }
  }
}

// What every function makes of a text, with those kernels.
std::vector<std::string> try_all(const std::string& text, const text::Kernels& kernels) {
  const text::Bytes bytes = text::as_bytes(text);
  const size_t invalid = text::find_invalid(bytes, kernels);
  std::vector<std::string> results{std::to_string(invalid),
      text::is_ascii(bytes, kernels) ? "ASCII" : "",
      std::to_string(text::get_latin1_size(bytes, kernels)),
      std::to_string(text::get_utf8_size(bytes, kernels))};
  const auto copy = [](const unsigned char* begin, const unsigned char* end) {
    return end == nullptr ? "none" : std::string(begin, end);
  };
  // As much room as there must be, so that the sanitizers see a store behind it.
  std::vector<unsigned char> to_latin1(text.size() + text::copy_slack);
  results.push_back(copy(to_latin1.data(), text::utf8_to_latin1(to_latin1.data(), bytes, kernels)));
  std::vector<unsigned char> to_utf8(text::get_utf8_size(bytes) + text::copy_slack);
  results.push_back(copy(to_utf8.data(), text::latin1_to_utf8(to_utf8.data(), bytes, kernels)));
  std::vector<char16_t> units(invalid + text::kernel_slack);
  const char16_t* const end = text::put_units(units.data(), bytes.first(invalid), kernels);
  const std::u16string unit_text(static_cast<const char16_t*>(units.data()), end);
  results.emplace_back();
  EXPECT_EQ(text::to_utf8(unit_text, results.back()), std::u16string::npos);
  EXPECT_EQ(results.back(), text.substr(0, invalid));
  return results;
}

TEST(Kernels, AllDoWhatPlainCodeDoes) {
  const char* const pieces[] = {"x", "abcdefghijklmnopqrstuvwxyz0123456789", "\u00e9",
      "\u00a0\u00ff", "\u0436\u0434", "\u65e5\u672c", "\U0001f600", "\xc3", "\xe6\x97", "\xff",
      "\xed\xa0\x80"};
  std::mt19937 random(1);
  for (int round = 0; round < 20000 && !testing::Test::HasFailure(); ++round) {
    // Often of few kinds, and mostly well-formed.
    const size_t first = random() % 11, kinds = 1 + random() % 3, length = random() % 150;
    std::string text;
    while (text.size() < length) {
      const size_t kind = random() % 60 == 0 ? random() % 11 : (first + random() % kinds) % 7;
      text += pieces[kind];
    }
    const auto expected = try_all(text, all_kernels.back());
    for (const text::Kernels& kernels : all_kernels) {
      EXPECT_EQ(try_all(text, kernels), expected) << testing::PrintToString(text);
    }
  }
}

}  // namespace
