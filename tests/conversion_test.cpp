// Chunked conversion: chunks, offsets, whole characters, and where failures are reported.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <string>
#include <vector>

#include "conversion/charset_to_charset_iter.h"
#include "conversion/hex_dump.h"
#include "conversion/trivial_iter.h"
#include "support/diagnostics.h"

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using BodyIter = i18n::CharsetToCharsetChunkIter<i18n::FromUnicodeIter>;
using HeaderIter = i18n::CharsetToCharsetChunkIter<i18n::FromUnicodeFullCharIter>;

std::string repeat(const std::string& text, int times) {
  std::string repeated;
  while (times-- > 0) repeated += text;
  return repeated;
}

template <class Iter>
auto pull_all(Iter& iter) {
  std::vector<std::decay_t<decltype(iter.get_chunk())>> chunks;
  do {
    iter.next_chunk();
    chunks.push_back(iter.get_chunk());
  } while (!iter.is_error() && iter.has_next_chunk());
  return chunks;
}

std::string join(const std::vector<std::string>& chunks) {
  std::string text;
  for (const auto& chunk : chunks) text += chunk;
  return text;
}

std::vector<size_t> sizes(const std::vector<std::string>& chunks) {
  std::vector<size_t> result;
  for (const auto& chunk : chunks) result.push_back(chunk.size());
  return result;
}

TEST(HexDump, WritesUnsignedUnitsWithoutLeadingZeros) {
  EXPECT_EQ(i18n::hex_dump(std::string("\x1b$B\x05\xff\0", 6)), "\\x1b\\x24\\x42\\x5\\xff\\x0");
  EXPECT_EQ(i18n::hex_dump(std::u16string(u"\u00e9\xd83d\x5")), "\\xe9\\xd83d\\x5");
}

TEST(ToUnicodeIter, KeepsASourceOffsetForEachUnit) {
  i18n::ToUnicodeIter iter("UTF-8", 3);
  EXPECT_FALSE(iter.has_in_str());
  EXPECT_FALSE(iter.has_next_chunk());
  iter.set_in_str("a\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80z");
  const auto chunks = pull_all(iter);
  ASSERT_EQ(chunks.size(), 2u);
  EXPECT_EQ(chunks[0].text, u"a\u00e9\u20ac");
  EXPECT_THAT(chunks[0].offsets, ElementsAre(0, 1, 3, 6));
  EXPECT_EQ(chunks[1].text, u"\U0001f600z");
  EXPECT_THAT(chunks[1].offsets, ElementsAre(0, 0, 4, 5));
}

TEST(ToUnicodeIter, GivesNoOffsetToWhatIcuHeldOver) {
  i18n::ToUnicodeIter iter("UTF-8", 2);
  iter.set_in_str("a\xf0\x9f\x98\x80");
  const auto chunks = pull_all(iter);
  ASSERT_EQ(chunks.size(), 2u);
  EXPECT_THAT(chunks[0].offsets, ElementsAre(0, 1, 5));
  EXPECT_THAT(chunks[1].offsets, ElementsAre(-1, 0));
  int start = 0;
  EXPECT_EQ(iter.trace_input_mb_char(0, &start), "\x80") << "the span is cut to the input";
  EXPECT_EQ(start, 4);
}

TEST(ToUnicodeIter, OfAnEmptyTextHasOneEmptyChunk) {
  i18n::ToUnicodeIter iter("UTF-8", 8);
  iter.set_in_str("");
  const auto chunks = pull_all(iter);
  ASSERT_EQ(chunks.size(), 1u);
  EXPECT_EQ(chunks[0].text, u"");
  EXPECT_THAT(chunks[0].offsets, ElementsAre(0));
}

TEST(ToUnicodeIter, ReportsTheBytesAtAFailure) {
  i18n::ToUnicodeIter iter("UTF-8", 8);
  iter.set_in_str(
      "abcdefghij\xff"
      "klmnop");
  const auto chunks = pull_all(iter);
  EXPECT_EQ(chunks.back().text, u"ij");
  EXPECT_TRUE(iter.is_error());
  EXPECT_THAT(
      take_diagnostics(),
      ElementsAre("6: Error converting input to Unicode\nThe first several bytes starting at the "
                  "beginning of the problematic MB character have the following hexadecimal "
                  "representation: \\xff\\x6b\\x6c\\x6d\\x6e.\nThe beginning of the problematic MB "
                  "character is 10 bytes away from the beginning of the input string.\n"));
}

TEST(FromUnicodeIter, ReportsTheUnitAtAFailure) {
  i18n::FromUnicodeIter iter("ISO-8859-1", 8);
  iter.set_in_str(u"ab\u20ac");
  const auto chunks = pull_all(iter);
  EXPECT_EQ(chunks.back().text, "ab");
  EXPECT_THAT(take_diagnostics(),
              ElementsAre("6: Error converting unicode to output.\nThe problematic wide character "
                          "has the following hexadecimal representation: \\x20ac.\nIt is 2 wide "
                          "characters away from the beginning of the Unicode sequence.\n"));
}

TEST(FromUnicodeIter, TakesOnlyALowerTargetLimit) {
  struct {
    int limit;
    size_t first_chunk;
  } cases[] = {{4, 4}, {8, 8}, {9, 8}, {-1, 8}, {0, 0}};
  for (const auto& c : cases) {
    i18n::FromUnicodeIter iter("UTF-8", 8);
    iter.set_in_str(u"abcdefghijkl");
    iter.set_target_limit(c.limit);
    iter.next_chunk();
    EXPECT_EQ(iter.get_chunk().text.size(), c.first_chunk) << c.limit;
    EXPECT_TRUE(iter.has_next_chunk()) << c.limit;
  }
}

TEST(ChunkIter, InErrorFromTheStartWhenTheCharsetDoesNotOpen) {
  EXPECT_TRUE(i18n::FromUnicodeIter("no-such-charset", 8).is_error());
  HeaderIter unknown_source("no-such-charset", "nor-this", 86, 256);
  EXPECT_TRUE(unknown_source.is_error());
  BodyIter unknown_target("UTF-8", "nor-this", 86, 256);
  EXPECT_TRUE(unknown_target.is_error());
  EXPECT_THAT(take_diagnostics(),
              ElementsAre("6: Unable to open a UConverter for charset no-such-charset",
                          "6: Unable to open a UConverter for charset no-such-charset",
                          "6: Unable to open a UConverter for charset nor-this"));
}

// ICU leaves offsets unwritten for some charsets and writes twice as many as there are units for
// others. What it did not write must not be what memory held.
TEST(ChunkIter, ReadsNoOffsetThatIcuDidNotWrite) {
  for (int32_t i = 0; i < ucnv_countAvailable(); ++i) {
    const char* name = ucnv_getAvailableName(i);
    SCOPED_TRACE(name);
    for (int round = 0; round < 2; ++round) {  // the second finds the first one's memory
      i18n::FromUnicodeIter iter(name, 86);
      iter.set_in_str(u"abc def {ghi} jkl [mno] ~ pqr ^ stu | vwx \\ yz");
      iter.set_report_errors(false);
      const auto chunks = pull_all(iter);
      const int32_t units = 47;
      EXPECT_THAT(chunks.front().offsets,
                  Each(testing::AllOf(testing::Ge(-1), testing::Le(units))));
    }
  }
}

struct FullCharCase {
  std::u16string text;
  int room;
  bool last;
  std::vector<std::string> chunks;
};

TEST(FullCharIter, EndsChunksOnWholeCharacters) {
  const FullCharCase cases[] = {
      {u"ab\u00e9cd", 3, true, {"ab", "\xc3\xa9", "cd"}},
      {u"ab\U0001f600", 4, true, {"ab", "\xf0\x9f\x98\x80"}},
      {u"abc", 3, true, {"abc"}},
      {u"", 3, true, {""}},
      // the last character waits for the text that follows
      {u"abc", 8, false, {"ab"}},
      {u"\u20ac", 8, false, {"\xe2"}},
      // longer than the room: split rather than stalled
      {u"\u20ac\u20ac", 2, true, {"\xe2", "\x82", "\xac", "\xe2", "\x82\xac"}},
  };
  for (const auto& c : cases) {
    i18n::FromUnicodeFullCharIter iter("UTF-8", c.room);
    iter.set_flush(c.last);
    iter.set_in_str(c.text);
    std::vector<std::string> chunks;
    do {
      iter.next_chunk();
      chunks.push_back(iter.get_chunk().text);
    } while (iter.has_next());
    EXPECT_EQ(chunks, c.chunks) << c.room;
  }
  i18n::FromUnicodeFullCharIter iter("UTF-8", 3);
  iter.set_in_str(u"ab\u00e9cd");
  const auto chunks = pull_all(iter);
  EXPECT_THAT(chunks[0].offsets, ElementsAre(0, 1, 3));
  EXPECT_THAT(chunks[1].offsets, ElementsAre(-1, -1, 1));
  EXPECT_THAT(chunks[2].offsets, ElementsAre(-1, 0, 1));
}

TEST(FullCharIter, SplitsACharacterThatIsAloneInItsCall) {
  i18n::FromUnicodeFullCharIter iter("UTF-8", 256);
  iter.set_flush(false);
  iter.set_in_str(std::u16string(86, u'\u20ac'));
  iter.next_chunk();
  EXPECT_EQ(iter.get_chunk().text.size(), 255u);
  iter.next_chunk();
  EXPECT_EQ(iter.get_chunk().text, "\xe2");
  iter.set_flush(true);
  iter.set_in_str(u"z");
  iter.next_chunk();
  EXPECT_EQ(iter.get_chunk().text, "\x82\xacz");
}

TEST(FullCharIter, SurvivesALimitBelowWhatItHolds) {
  i18n::FromUnicodeFullCharIter iter("UTF-8", 4);
  iter.set_in_str(u"a\U0001f600b");
  iter.next_chunk();
  iter.set_target_limit(1);
  std::string rest;
  while (iter.has_next_chunk()) {
    iter.next_chunk();
    rest += iter.get_chunk().text;
  }
  EXPECT_EQ(rest,
            "\xf0\x9f\x98\x80"
            "b");
}

TEST(CharIter, GroupsAdjacentEqualOffsets) {
  struct {
    std::string text;
    std::vector<int32_t> offsets;
    std::vector<std::string> characters;
  } cases[] = {
      {"ab", {0, 1, 2}, {"a", "b"}},
      {"abcd", {0, 0, 1, 1, 2}, {"ab", "cd"}},
      {"abc", {5, 5, 5, 6}, {"abc"}},
      {"abc", {0, 1, 0, 2}, {"a", "b", "c"}},
      {"", {0}, {}},
      {"", {}, {}},
  };
  for (const auto& c : cases) {
    i18n::StrWithOffsets<char> converted;
    converted.text = c.text;
    converted.offsets = c.offsets;
    i18n::CharIter<char> iter(converted);
    std::vector<std::string> characters;
    while (iter.has_next_chunk()) {
      iter.next_chunk();
      characters.push_back(iter.get_chunk());
    }
    EXPECT_EQ(characters, c.characters) << c.text;
    iter.next_chunk();
    EXPECT_EQ(iter.get_chunk(), "");
  }
}

TEST(CharsetToCharset, DeliversAllChunksOfALongText) {
  BodyIter body("ISO-8859-15", "UTF-8", 86, 256);
  body.set_in_str(std::string(300, '\xa4'));
  const auto chunks = pull_all(body);
  EXPECT_THAT(sizes(chunks), ElementsAre(256, 2, 256, 2, 256, 2, 126));
  EXPECT_EQ(join(chunks), repeat("\xe2\x82\xac", 300));

  HeaderIter header("ISO-8859-15", "UTF-8", 86, 256);
  header.set_in_str(std::string(85, '\xa4'));
  header.set_limit_byte_size(45);
  const auto words = pull_all(header);
  EXPECT_THAT(sizes(words), ElementsAre(42, 42, 42, 42, 42, 45));
  EXPECT_EQ(join(words), repeat("\xe2\x82\xac", 85));
}

TEST(CharsetToCharset, EmptyTextHasOneEmptyChunk) {
  BodyIter body("UTF-8", "ISO-8859-1", 86, 256);
  body.set_in_str("");
  EXPECT_THAT(pull_all(body), ElementsAre(""));
}

struct FailureCase {
  const char* from;
  const char* to;
  std::string input;
  std::string converted;
  const char* bytes;
  int position;
  const char* unit;  // null: the input cannot be read
};

TEST(CharsetToCharset, ReportsAFailureInBytesOfTheWholeInput) {
  const std::string hundred(100, 'x');
  const FailureCase cases[] = {
      {"UTF-8", "ISO-8859-1",
       "abcdefghij\xff"
       "klmnop",
       "abcdefghij", "\\xff\\x6b\\x6c\\x6d\\x6e", 10, nullptr},
      {"UTF-8", "ISO-8859-1", hundred + "\xffz", hundred, "\\xff\\x7a", 100, nullptr},
      {"UTF-8", "US-ASCII", "abcdefg\xc3\xa9z", "abcdefg", "\\xc3\\xa9", 7, "\\xe9"},
      {"UTF-8", "ISO-8859-1", hundred + "\xe2\x82\xacz", hundred, "\\xe2\\x82\\xac", 100,
       "\\x20ac"},
      {"UTF-8", "ISO-8859-1", "\xc3\xa9\xf0\x9f\x98\x80", "\xe9", "\\xf0\\x9f\\x98\\x80", 2,
       "\\xde00"},
      {"Shift_JIS", "ISO-8859-1", "a\x93\xfa", "a", "\\x93\\xfa", 1, "\\x65e5"},
      // an unpaired surrogate, held over from the chunk before the one that fails
      {"UTF-7", "UTF-8", std::string(85, 'x') + "+2D0-y", std::string(85, 'x'), "\\x79", 90,
       "\\x79"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.input);
    BodyIter iter(c.from, c.to, 86, 256);
    iter.set_in_str(c.input);
    EXPECT_EQ(join(pull_all(iter)), c.converted);
    EXPECT_TRUE(iter.is_error());
    const std::string position = std::to_string(c.position);
    const std::string expected =
        c.unit == nullptr
            ? "6: Error converting input to Unicode\nThe first several bytes starting at the "
              "beginning of the problematic MB character have the following hexadecimal "
              "representation: " +
                  std::string(c.bytes) + ".\nThe beginning of the problematic MB character is " +
                  position + " bytes away from the beginning of the input string.\n"
            : "6: Error converting unicode to output.\nThe hexadecimal representation of the "
              "problematic MB character is: " +
                  std::string(c.bytes) + ".\nIt is " + position +
                  " bytes away from the beginning of the input string\nIts unicode hexadecimal "
                  "representation is " +
                  c.unit + ".\n";
    EXPECT_THAT(take_diagnostics(), ElementsAre(expected));
  }
}

TEST(CharsetToCharset, TracesAByteBackThroughBothStages) {
  HeaderIter iter("Shift_JIS", "UTF-8", 86, 256);
  iter.set_in_str("a\x93\xfa\x96{");
  iter.next_chunk();
  struct {
    int byte;
    const char* source;
    int start;
  } cases[] = {{0, "a", 0}, {1, "\x93\xfa", 1}, {3, "\x93\xfa", 1}, {6, "\x96{", 3}};
  for (const auto& c : cases) {
    int start = -2;
    EXPECT_EQ(iter.trace_input_mb_char(c.byte, &start), c.source) << c.byte;
    EXPECT_EQ(start, c.start) << c.byte;
  }
}

TEST(TrivialIter, PassesTheInputOnInChunks) {
  struct {
    size_t size;
    int limit;  // 0: none is set
    std::vector<size_t> chunks;
  } cases[] = {
      {600, 0, {256, 256, 88}},
      {600, 100, {100, 100, 100, 100, 100, 100}},
      {600, 256, {256, 256, 88}},
      {600, -5, {256, 256, 88}},
      {10, 0, {10}},
      {10, 20, {10}},
      {0, 0, {0}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.size);
    i18n::TrivialIter iter(256);
    EXPECT_FALSE(iter.has_next_chunk());
    const std::string text = repeat("0123456789", static_cast<int>(c.size / 10));
    iter.set_in_str(text);
    iter.set_limit_byte_size(c.limit);
    const auto chunks = pull_all(iter);
    EXPECT_EQ(sizes(chunks), c.chunks);
    EXPECT_EQ(join(chunks), text);
    EXPECT_FALSE(iter.get_char_iter().has_next_chunk());
  }
}

}  // namespace
