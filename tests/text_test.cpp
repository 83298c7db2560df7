// UTF-8 and its neighbours, plain code beside ICU and vector code beside plain code; charsets as
// tables.
#include <gtest/gtest.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <random>
#include <vector>

#include "support/beside_icu.h"
#include "text/tables/charset.h"
#include "text/unicode/latin1.h"
#include "text/unicode/utf16.h"
#include "text/unicode/utf8.h"

namespace {

std::vector<text::Kernels> get_kernels_that_are_there() {
  std::vector<text::Kernels> there;
  for (const auto& row : text::get_all_kernels()) {
    if (row.are_there()) there.push_back(row);
  }
  return there;
}
const std::vector<text::Kernels> all_kernels = get_kernels_that_are_there();

std::string to_utf8(UChar32 c) {
  std::string text;
  return icu::UnicodeString(c).toUTF8String(text);
}

// By plain code, and now and then behind other text, so that it lies across two stretches.
bool is_utf8_by_all_kernels(const std::string& text) {
  const size_t plain = text::find_invalid(text::as_bytes(text), all_kernels.back());
  static int calls = 0;
  if (++calls % 7 == 0) {
    const size_t before = text::kernel_stretch - 2;
    const std::string long_text = std::string(before, 'x') + text + std::string(34, 'y');
    const size_t expected = plain == text.size() ? long_text.size() : before + plain;
    for (const text::Kernels& kernels : all_kernels) {
      EXPECT_EQ(text::find_invalid(text::as_bytes(long_text), kernels), expected);
    }
  }
  return plain == text.size();
}

// Beside ICU's strict converter.
class Unicode : public testing::Test {
 protected:
  void SetUp() override {
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setToUCallBack(
        utf8_.getAlias(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  }

  // Returns whether the text is well-formed.
  bool expect_as_icu(const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    UChar units[64];
    const auto count = static_cast<size_t>(ucnv_toUChars(utf8_.getAlias(), units, std::size(units),
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
      same &=
          std::equal(begin, latin1_end, units, units + count) && text::count_units(bytes) == count;
    }
    EXPECT_TRUE(same) << testing::PrintToString(text);
    return is_valid;
  }

 private:
  UErrorCode opened_ = U_ZERO_ERROR;
  icu::LocalUConverterPointer utf8_{ucnv_open("UTF-8", &opened_)};
};

TEST_F(Unicode, EveryCharacterIsAsIcuHasIt) {
  for (UChar32 c = 0; c <= 0x10ffff && !HasFailure(); ++c) {
    if (U_IS_SURROGATE(c)) continue;
    EXPECT_TRUE(expect_as_icu(to_utf8(c)));
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
      std::to_string(text::count_units(bytes, kernels)),
      std::to_string(text::get_utf8_size(bytes, kernels))};
  const auto copy = [](const unsigned char* begin, const unsigned char* end) {
    return end == nullptr ? "none" : std::string(begin, end);
  };
  text::AsciiSet set;
  for (const char c : {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 'x', 'i', 'j'}) {
    set.add(static_cast<unsigned char>(c));
  }
  std::vector<unsigned char> run(text.size());
  const size_t copied = text::copy_run(run.data(), bytes, set, kernels);
  results.push_back(copy(run.data(), run.data() + copied));
  EXPECT_TRUE(std::all_of(run.begin() + static_cast<std::ptrdiff_t>(copied), run.end(),
      [](unsigned char byte) { return byte == 0; }));
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

// tools/tables tries everything.
TEST(Tables, AreAsIcuHasIt) {
  for (const char* charset : {"ISO-8859-1", "KOI8-R", "ibm-1047", "Shift_JIS", "EUC-JP", "EUC-TW",
           "GBK", "GB18030", "Big5-HKSCS"}) {
    BesideIcu both(charset);
    ASSERT_TRUE(both.has_table()) << charset;
    for (int first = 0; first < 256; first += 7) {
      for (int second = 0; second < 256; ++second) {
        const std::string bytes{static_cast<char>(first), static_cast<char>(second)};
        for (const char* tail : {"", "0", "\xa1", "\xa1\xa1", "0\x81\x30"}) {
          EXPECT_TRUE(both.agrees_on_bytes(bytes + tail)) << testing::PrintToString(bytes);
        }
      }
    }
    std::string text;
    for (UChar32 c = 0; c < 0x30000; c += c < 0x500 ? 3 : 37) {
      if (U_IS_SURROGATE(c)) continue;
      const std::string character = to_utf8(c);
      const bool is_left = !both.agrees_on_text(character, text::Invisible::kRefused) ||
                           (both.taken() == 0 && both.has_text(character));
      EXPECT_FALSE(is_left) << charset << " " << c;
      EXPECT_TRUE(both.agrees_on_text(text + character, text::Invisible::kDropped)) << c;
      // Stretches of what the charset has, now and then with ASCII in between.
      if (both.taken() == text.size() + character.size()) text += character;
      if (text.size() > 400) text.clear();
      if (c % 50 == 0) text += "plain text, long enough for a run of it";
    }
  }
}

TEST(Tables, KeepToTheRoomThatThereIs) {
  const std::string utf8 =
      "a long run of ASCII that goes on and on \u3042\u4e00\u00a7x\U00020000\u00ad";
  for (const char* charset : {"KOI8-R", "Shift_JIS", "EUC-JP", "GB18030"}) {
    const std::unique_ptr<const text::Table> table = text::make_table(charset);
    std::vector<unsigned char> whole(4 * utf8.size());
    const auto all = table->from_utf8(
        text::as_bytes(utf8), whole.data(), whole.size(), text::Invisible::kDropped);
    for (size_t room = 0; room <= all.written; ++room) {
      std::vector<unsigned char> bytes(room);  // no byte more, for the sanitizers
      const auto there =
          table->from_utf8(text::as_bytes(utf8), bytes.data(), room, text::Invisible::kDropped);
      EXPECT_TRUE(std::equal(bytes.data(), bytes.data() + there.written, whole.data()));
      EXPECT_EQ(there.stop == text::Stop::kFull, room < all.written) << charset << room;
      std::vector<unsigned char> back(room);
      const auto read = table->to_utf8(text::Bytes(whole).first(all.written), back.data(), room);
      EXPECT_EQ(std::string(back.data(), back.data() + read.written), utf8.substr(0, read.written));
      EXPECT_EQ(read.stop == text::Stop::kFull, read.read < all.written);
    }
  }
}

TEST(Charsets, AreFoundByEverySpelling) {
  const text::Charset* const koi8 = text::find_charset("KOI8-R");
  ASSERT_NE(koi8, nullptr);
  EXPECT_STREQ(koi8->name(), "ibm-878_P100-1996");
  for (const char* name : {"koi8-r", "koi8", "k-o-i-8", "ibm-878_P100-1996"}) {
    EXPECT_EQ(text::find_charset(name), koi8) << name;
  }
  const std::string too_long(60, 'x');
  for (const char* name :
      {"", "no-such", "KOI8-R,version=1", too_long.c_str(), static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(text::find_charset(name), nullptr);
  }
  EXPECT_NE(koi8->get_table(1), nullptr);
  for (const char* name : {"UTF-16", "UTF-7", "ISO-2022-JP", "HZ", "GSM0338", "ibm-16684"}) {
    EXPECT_EQ(text::find_charset(name)->get_table(1 << 30), nullptr) << name;
  }
}

TEST(Charsets, WithManyCharactersEarnTheirTables) {
  const text::Charset* const charset = text::find_charset("windows-949");
  EXPECT_EQ(charset->get_table(1000), nullptr);
  const text::Table* table = nullptr;
  int calls = 1;
  while (table == nullptr && ++calls < 10000) table = charset->get_table(1000);
  EXPECT_GT(calls, 500);
  EXPECT_LT(calls, 5000);
  EXPECT_EQ(charset->get_table(0), table);
}

// Names come from outside.
TEST(CharsetsDeathTest, AreNotKeptWithoutEnd) {
  const auto spell = [] {
    for (int i = 0; i < 5000; ++i) {
      std::string name = "K";
      for (int bit = 0; bit < 13; ++bit) name += (i >> bit & 1) != 0 ? "-" : "_";
      text::find_charset((name + "OI8-R").c_str());
    }
    std::exit(text::find_charset("ISO-8859-2") != nullptr ? 1 : 0);
  };
  EXPECT_EXIT(spell(), testing::ExitedWithCode(0), "");
}

}  // namespace
