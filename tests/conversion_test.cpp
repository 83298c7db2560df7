// Chunked conversion: chunks, offsets, whole characters, and where failures are reported.
#include <stdio_ext.h>
#include <unicode/ucnv.h>

#include <cstdio>

#include "conversion/charset_to_charset_iter.h"
#include "conversion/trivial_iter.h"
#include "support/testing.h"

namespace {

using BodyIter = i18n::CharsetToCharsetChunkIter<i18n::FromUnicodeIter>;

// Chunks and their offsets as tables write them: "ab|c|" and "0 1 2|0 1|".
template <class T>
struct Chunks {
  void add(std::basic_string_view<T> chunk) {
    texts += chunk;
    texts += T{'|'};
  }
  void add(const i18n::StrWithOffsets<T>& chunk) {
    add(chunk.text);
    for (const int32_t offset : chunk.offsets) offsets += std::to_string(offset) + " ";
    offsets.back() = '|';
  }
  std::basic_string<T> texts;
  std::string offsets;
};

template <class T, class Iter>
Chunks<T> pull_all(Iter& iter) {
  Chunks<T> chunks;
  do {
    iter.next_chunk();
    chunks.add(iter.get_chunk());
  } while (!iter.is_error() && iter.has_next_chunk());
  return chunks;
}

TEST(ToUnicodeIter, KeepsASourceOffsetForEachUnit) {
  const std::tuple<int, const char*, std::u16string, const char*> cases[] = {
      {3, "a\u00e9\u20ac\U0001f600z", u"a\u00e9\u20ac|\U0001f600z|", "0 1 3 6|0 0 4 5|"},
      // ICU holds over half a character, and then gives no offset for it
      {2, "a\U0001f600", u"a\xd83d|\xde00|", "0 1 5|-1 0|"}, {8, "", u"|", "0|"}};
  for (const auto& [room, input, texts, offsets] : cases) {
    i18n::ToUnicodeIter iter("UTF-8", room);
    iter.set_in_str(input);
    const auto chunks = pull_all<char16_t>(iter);
    EXPECT_EQ(chunks.texts, texts);
    EXPECT_EQ(chunks.offsets, offsets);
  }
}

TEST(UcnvChunkIter, ReportsAFailureInUnitsOfItsInput) {
  i18n::ToUnicodeIter decoder("UTF-8", 8);
  decoder.set_in_str("abcdefghij\377\5\1mnop");
  EXPECT_EQ(pull_all<char16_t>(decoder).texts, u"abcdefgh|ij|");
  EXPECT_EQ(take_diagnostics(), input_failure("\\xff\\x5\\x1\\x6d\\x6e", 10));
  i18n::FromUnicodeIter encoder("ISO-8859-1", 8);
  encoder.set_in_str(u"ab\u20acz");
  char buffer[256];
  std::setvbuf(stderr, buffer, _IOFBF, sizeof buffer);
  std::fputs(" ", stderr);
  EXPECT_EQ(pull_all<char>(encoder).texts, "ab|");
  EXPECT_EQ(__fpending(stderr), 0u) << "the message is seen at once";
  std::setvbuf(stderr, nullptr, _IONBF, 0);
  EXPECT_EQ(take_diagnostics(),
      "6: Error converting unicode to output.\nThe problematic wide character has the following "
      "hexadecimal representation: \\x20ac.\nIt is 2 wide characters away from the beginning of "
      "the Unicode sequence.\n");
}

// ICU leaves offsets unwritten for some charsets and writes twice as many as there are units for
// others. What it did not write must not be what memory held.
TEST(ChunkIter, ReadsNoOffsetThatIcuDidNotWrite) {
  for (int32_t i = 0; i < ucnv_countAvailable(); ++i) {  // each finds the last one's memory
    i18n::FromUnicodeIter iter(ucnv_getAvailableName(i), 86);
    iter.set_in_str(u"abc def {ghi} jkl [mno] ~ pqr ^ stu | vwx \\ yz");
    iter.set_report_errors(false);
    iter.next_chunk();
    for (const int32_t offset : iter.get_chunk().offsets) {
      EXPECT_TRUE(-1 <= offset && offset <= 47) << ucnv_getAvailableName(i) << " " << offset;
    }
  }
  // ICU writes two for each of these units, past a chunk's end.
  i18n::ToUnicodeIter gsm("gsm-03.38-2009", 86);
  gsm.set_in_str(repeat("\x1b(", 86));
  EXPECT_EQ(pull_all<char16_t>(gsm).texts, std::u16string(86, u'{') + u"|");
}

TEST(FullCharIter, EndsChunksOnWholeCharacters) {
  const std::tuple<std::vector<std::u16string>, int, std::string, std::string> cases[] = {
      {{u"ab\u00e9cd"}, 3, "ab|\u00e9|cd|", "0 1 3|-1 -1 1|-1 0 1|"},
      {{u"ab\U0001f600"}, 4, "ab|\U0001f600|", "0 1 4|-1 -1 -1 -1 0|"},
      {{u"abc"}, 3, "abc|", "0 1 2 3|"}, {{u""}, 3, "|", "0|"},
      // the last character waits for the text that follows
      {{u"abc", u"z"}, 8, "ab|cz|", "0 1 3|-1 0 1|"},
      // alone in its call or longer than the room: split rather than stalled
      {{u"\u20ac", u"z"}, 8, "\xe2|\x82\xacz|", "0 1|-1 -1 0 1|"},
      {{u"\u20ac\u20ac\u20ac", u"z"}, 8, "\u20ac\u20ac|\xe2|\x82\xacz|",
          "0 0 0 1 1 1 3|-1 0|-1 -1 0 1|"},
      {{u"\u20ac\u20ac"}, 2, "\xe2|\x82|\xac|\xe2|\x82\xac|", "0 1|-1 0|-1 1|-1 0|-1 -1 0|"}};
  for (const auto& [inputs, room, texts, offsets] : cases) {
    i18n::FromUnicodeFullCharIter iter("UTF-8", room);
    Chunks<char> chunks;
    for (const auto& input : inputs) {
      iter.set_flush(&input == &inputs.back());
      iter.set_in_str(input);
      do {
        iter.next_chunk();
        chunks.add(iter.get_chunk());
      } while (iter.has_next());
    }
    EXPECT_EQ(chunks.texts, texts);
    EXPECT_EQ(chunks.offsets, offsets) << texts;
  }
}

TEST(CharsetToCharset, ReportsAFailureInBytesOfTheWholeInput) {
  const std::tuple<const char*, const char*, std::string, std::string, std::string> cases[] = {
      {"UTF-8", "ISO-8859-1", x(100) + "\377klmnop", x(86) + "|" + x(14),
          input_failure("\\xff\\x6b\\x6c\\x6d\\x6e", 100)},
      {"UTF-8", "ISO-8859-1", x(100) + "\u20acz", x(86) + "|" + x(14),
          target_failure("\\xe2\\x82\\xac", 100, "\\x20ac")},
      {"UTF-8", "ISO-8859-1", "\u00e9\U0001f600", "\xe9",
          target_failure("\\xf0\\x9f\\x98\\x80", 2, "\\xde00")},
      {"Shift_JIS", "ISO-8859-1", "a\x93\xfa", "a", target_failure("\\x93\\xfa", 1, "\\x65e5")},
      // ICU does not say where units of compound text came from
      {"x11-compound-text", "US-ASCII", "ab\xe9", "ab",
          target_failure("\\x61\\x62\\xe9", 0, "\\xe9")},
      // an unpaired surrogate, held over from the chunk before the one that fails
      {"UTF-7", "UTF-8", x(85) + "+2D0-y", x(85) + "|", target_failure("\\x79", 90, "\\x79")},
      {"UTF-7", "UTF-8", x(85) + "+2D0-", x(85) + "|", target_failure("", 89, "")}};
  for (const auto& [from, to, input, converted, report] : cases) {
    BodyIter iter(from, to, 86, 256);
    iter.set_in_str(input);
    EXPECT_EQ(pull_all<char>(iter).texts, converted + "|");
    EXPECT_TRUE(iter.is_error());
    EXPECT_EQ(take_diagnostics(), report);
  }
}

}  // namespace
