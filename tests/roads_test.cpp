// The fast road beside the exact one, if it is there: it takes no text that the exact one would
// write otherwise, or report. The replay of saved fuzz inputs does the same for all charsets.
#include <unicode/unistr.h>

#include <span>

#include "support/roads.h"
#include "support/testing.h"
#include "text/tables/charset.h"

namespace {

using fast::Use;
using namespace i18n_mime;

// Returns whether the fast road took the text.
bool expect_agreement(const Road& road, const char* from, const char* to, const std::string& text) {
  const i18n::CString fast = fast::encode({road.use, road.encoding, from, to}, text);
  EXPECT_EQ(take_diagnostics(), "") << "the fast road is silent";
  const std::string exact = take(road.encode_exactly(text.c_str(), from, to));
  const std::string reports = take_diagnostics();
  const bool was_taken = fast != nullptr;
  EXPECT_TRUE(!was_taken || (exact == fast.get() && reports.empty())) << exact << reports;
  EXPECT_EQ(take(road.encode(text.c_str(), from, to)), exact);
  EXPECT_EQ(take_diagnostics(), reports);
  if (testing::Test::HasFailure()) {
    ADD_FAILURE() << "road " << &road - roads << " from " << testing::PrintToString(from) << " to "
                  << testing::PrintToString(to) << " of " << testing::PrintToString(text);
  }
  return was_taken;
}

void expect_agreement_on_all_roads(const std::string& text) {
  for (const Road& road : roads) {
    EXPECT_EQ(expect_agreement(road, "UTF-8", "UTF-8", text), bool(HAS_FAST_ROAD));
  }
}

// Chunks of the exact road are 86 units and 256 bytes long.
TEST(Roads, AgreeWhereverACharacterStandsInAHeader) {
  const std::string characters[] = {"\u00e9", "\u20ac", "\U0001f600", "=", "\u20ac\U0001f600z"};
  for (const std::string& character : characters) {
    for (int before = 0; before <= 190 && !HasFailure(); ++before) {
      expect_agreement_on_all_roads(x(before) + character + x(before % 90));
      expect_agreement_on_all_roads(x(before % 4) + repeat(character, before));
    }
  }
  // By tables, where characters can vanish: those count as units, and have no bytes.
  const std::tuple<const char*, std::string, const char*> others[] = {
      {"KOI8-R", "\u0439", "\u200b"}, {"windows-1252", "\u20ac", "\ufeff"},
      {"Shift_JIS", "\u65e5", "\u200b\u2060"}, {"Big5-HKSCS", "\U00020547", "\u200b"},
      {"GB18030", "\U0001f600", "a"}};
  for (const auto& [charset, character, vanishing] : others) {
    text::find_charset(charset)->get_table(1 << 20);
    for (int before = 0; before <= 190 && !HasFailure(); ++before) {
      for (const Road& road : std::span(roads).last(2)) {
        const std::string text = x(before) + vanishing + repeat(character, before % 70) + vanishing;
        EXPECT_EQ(expect_agreement(road, "UTF-8", charset, text + "z"), bool(HAS_FAST_ROAD));
        expect_agreement(road, "UTF-8", charset, text);
        expect_agreement(road, "UTF-8", charset, repeat(vanishing + character, before));
      }
    }
  }
  // A pair that was split once is not split again, and escapes are not cut.
  const std::string smile = characters[2], euro = characters[1];
  expect_agreement_on_all_roads(repeat(smile, 84) + "x====");
  expect_agreement_on_all_roads(x(81) + repeat(smile, 3) + repeat(euro, 85));
}

// Pieces of the fast road are 1024 units or bytes long, and 4096 bytes.
TEST(Roads, AgreeWhereverACharacterStandsInABody) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"UTF-8", "ISO-8859-1", "\u00e9"}, {"ISO-8859-1", "UTF-8", "\xe9"},
      {"UTF-8", "utf8", "\u20ac"}, {"UTF-8", "Shift_JIS", "\u65e5"},
      {"Shift_JIS", "ISO-2022-JP", "\x93\xfa"}, {"UTF-8", "GB18030", "\U0001f600"},
      {"UTF-8", "ibm-933", "\uac00\uac00"}};  // with states
  for (const auto& [from, to, character] : cases) {
    for (const int piece : {1024, 2048, 4096}) {
      for (int before = piece - 5; before <= piece + 5 && !HasFailure(); ++before) {
        for (const Road& road : std::span(roads).first(2)) {
          const std::string text = x(before) + character;
          EXPECT_EQ(expect_agreement(road, from, to, text), bool(HAS_FAST_ROAD));
          expect_agreement(road, from, to, repeat(character, 3) + text + " ");
          expect_agreement(road, from, to, text + "\xff");
        }
      }
    }
  }
}

TEST(Roads, AgreeForBodiesOfAnySize) {
  for (int size = 0; size <= 3000 && !HasFailure(); ++size) {
    expect_agreement(roads[size % 8 == 0 ? 1 : 0], "UTF-8", "UTF-8", x(size));
    if (size % 8 == 0) expect_agreement(roads[0], "UTF-8", "UTF-8", repeat("=", size));
    // longer than is expected
    if (size % 9 == 0) expect_agreement(roads[1], "KOI8-R", "UTF-8", repeat("\xc1", size));
    if (size > 160) continue;
    for (const char* end : {" ", "\t", "=", " =", "\u00e9"}) {
      expect_agreement_on_all_roads(x(size) + end);
    }
  }
}

// A row that ISO-2022-JP lacks a character of goes to the exact road. Between equal names, text
// stays as it is.
TEST(Roads, AgreeOnEveryJapaneseCharacter) {
  text::find_charset("Shift_JIS")->get_table(1 << 20);
  expect_agreement(roads[1], "ISO-2022-JP", "ISO-2022-JP", "\x1b(B");
  for (char32_t c = 1; c < 0x80; ++c) {
    const bool is_switch = c == 0x0e || c == 0x0f || c == 0x1b;
    const bool is_sure = HAS_FAST_ROAD && !is_switch && c != 0x1a && c != 0x1c && c != 0x7f;
    const std::string text = "\u65e5" + std::string(1, static_cast<char>(c)) + "\u65e5";
    EXPECT_EQ(expect_agreement(roads[1], "UTF-8", "ISO-2022-JP", text), is_sure) << text;
  }
  for (char row = 0x21; row <= 0x7e && !HasFailure(); ++row) {
    std::string jis = "\x1b$B", text;
    for (char cell = 0x21; cell <= 0x7e; ++cell) jis.append({row, cell, row, '!'});
    icu::UnicodeString units(jis.data(), static_cast<int>(jis.size()), "ISO-2022-JP");
    units.findAndReplace(u"\ufffd", u"a").toUTF8String(text);
    expect_agreement(roads[1], "UTF-8", "ISO-2022-JP", repeat(text, 8) + "\u3042");
  }
}

// Converters that look ahead or have options are left to the exact one, as are headers in charsets
// without tables.
TEST(Roads, FastIsTakenByWhatItIsSureOf) {
  const char* const nihongo = "\x93\xfa\x96{\x8c\xea";
  const std::tuple<const char*, const char*, const char*, bool, bool> cases[] = {
      {"UTF-8", "UTF-8", "a\u00e9", true, true}, {"UTF-8", "utf8", "a\u00e9", true, true},
      {"UTF-8", "latin1", "a\u00e9", true, true}, {"UTF-8", "latin1", "\u20ac", false, false},
      {"latin1", "UTF-8", "a\xe9", true, true}, {"latin1", "ISO-8859-1", "\xe9", true, true},
      {"ASCII", "UTF-8", "abc", true, true}, {"ASCII", "UTF-8", "\u00e9", false, false},
      {"UTF-8", "ASCII", "abc", true, true}, {"latin1", "ASCII", "\xe9", false, false},
      {"Shift_JIS", "ISO-2022-JP", nihongo, true, false},
      {"Shift_JIS", "ISO-8859-1", nihongo, false, false},
      {"Shift_JIS", "UTF-8", "\x93", false, false}, {"UTF-8", "KOI8-R", "\u0430", true, true},
      {"UTF-8", "UTF-7", "abc", false, false}, {"UTF-16", "UTF-8", "ab", false, false},
      {"UTF-8", "SCSU", "abc", false, false}, {"UTF-8", "LMBCS", "abc", false, false},
      {"UTF-8,version=0", "UTF-8", "abc", false, false},
      {"UTF-8", "KOI8-R,version=0", "abc", false, false}, {"UTF-8", "no-such", "abc", false, false},
      {"UTF-8", "Adobe-Standard-Encoding", "abc", true, false},
      {"no-such", "UTF-8", "abc", false, false}, {nullptr, "UTF-8", "abc", false, false},
      {"UTF-8", nullptr, "abc", false, false}};
  for (const auto& [from, to, text, takes_body, takes_header] : cases) {
    for (const Road& road : roads) {
      const bool takes = road.use == Use::kBody ? takes_body : takes_header;
      EXPECT_EQ(expect_agreement(road, from, to, text), HAS_FAST_ROAD && takes)
          << testing::PrintToString(from) << " " << testing::PrintToString(to);
    }
  }
}

// Marks cannot be taken back, so this runs in a process of its own.
TEST(RoadsDeathTest, AgreeWhenBytesAreMarked) {
  const auto mark = [] {
    QPBodyEncodingTable().set_encode_char('x');
    QPHeaderEncodingTable().set_encode_char('y');
    EXPECT_EQ(take(i18n_mime_encode_qp("xy", "UTF-8", "UTF-8")), "=78y");
    EXPECT_EQ(take(i18n_mime_encode_header_qp("xy", "UTF-8", "UTF-8")), "=?UTF-8?Q?x=79?=");
    expect_agreement_on_all_roads(repeat("xyz= \u00e9\u20ac", 40));
    struct Odd : QPBodyEncodingTable {  // lines are cut by looking for what is taken out here
      Odd() { table[static_cast<size_t>('=')] = 0; }
    } odd;
    EXPECT_FALSE(expect_agreement(roads[0], "UTF-8", "UTF-8", repeat("a=", 100)));
    std::exit(HasFailure() ? 1 : 0);
  };
  EXPECT_EXIT(mark(), testing::ExitedWithCode(0), "");
}

}  // namespace
