// Conversion handles and one-shot conversion.
#include <malloc.h>
#include <qorvii18n/i18n_iconv.h>
#include <unicode/ucnv.h>

#include "support/testing.h"

namespace {

constexpr size_t unset = 4711;

// The output with its NUL, in a buffer of the library's.
std::string convert_easy(const char* from, const std::string& input, const char* to) {
  int64_t length = 0;
  char* output = i18n_iconv_easy(i18n_charset_open(from), input.data(),
      static_cast<int>(input.size()), i18n_charset_open(to), nullptr, &length);
  std::string result = output ? std::string(output, static_cast<size_t>(length) + 1) : "none";
  i18n_iconv_free(output);
  return result;
}

using Conversion = std::tuple<int, size_t, std::string>;  // status, position, output

// Converts into a buffer of the library's, or for a capacity other than 0 into one of the caller's.
Conversion convert(
    const char* from, const std::string& input, const char* to, size_t capacity = 0) {
  std::string callers(capacity + 1, '#');
  char* output = capacity != 0 ? callers.data() : nullptr;
  size_t length = capacity, position = unset;
  const int status = i18n_iconv_easy_ex(i18n_charset_open(from), input.data(), input.size(),
      &position, i18n_charset_open(to), &output, &length);
  EXPECT_EQ(callers.back(), '#') << "written past the end";
  Conversion result(status, position, output ? std::string(output, length) : "none");
  if (capacity == 0) i18n_iconv_free(output);
  return result;
}

// ICU 72 cannot copy every converter: closing a copy of x11-compound-text broke the original.
TEST(IconvHandle, OfEveryCharsetCanBeOpenedAgain) {
  i18n_iconv_close(nullptr);
  i18n_charset_t* utf8 = i18n_charset_open("UTF-8");
  for (i18n_charset_t** charset = i18n_charset_open_all(); *charset != nullptr; ++charset) {
    for (int round = 0; round < 2; ++round) {
      i18n_iconv_t* from = i18n_iconv_open(utf8, *charset);
      i18n_iconv_t* to = i18n_iconv_open(*charset, utf8);
      ASSERT_TRUE(from != nullptr && to != nullptr && from != to)
          << i18n_charset_get_name(*charset);
      i18n_iconv_reset(from);
      i18n_iconv_close(from);
      i18n_iconv_close(to);
    }
  }
}

TEST(IconvEasy, FillsTheCallersBufferToTheLastByte) {
  i18n_charset_t* utf8 = i18n_charset_open("UTF-8");
  char buffer[4] = "...";
  int64_t length = 3;
  EXPECT_EQ(i18n_iconv_easy(utf8, "abc", 3, utf8, buffer, &length), buffer);
  EXPECT_STREQ(buffer, "abc");
  length = 2;
  EXPECT_EQ(i18n_iconv_easy(utf8, "abc", 3, utf8, buffer, &length), nullptr);
  EXPECT_EQ(length, 3) << "the length that was needed";
  length = 77;
  EXPECT_EQ(i18n_iconv_easy(utf8, "\xff", 1, utf8, nullptr, &length), nullptr);
  EXPECT_EQ(i18n_iconv_easy(utf8, "abc", -1, utf8, buffer, &length), nullptr);
  EXPECT_EQ(length, 77) << "the input cannot be read";
  EXPECT_EQ(take_diagnostics(), "");
}

// The other function has more room.
TEST(IconvEasy, HasRoomForAUnitAByteAndFourBytesAUnit) {
  const std::string four_pairs = "\x0b\x01\x01\x80\x80\x80\x80";
  EXPECT_EQ(convert_easy("SCSU", four_pairs, "UTF-8"), "none");
  EXPECT_EQ(convert("SCSU", four_pairs, "UTF-8"), Conversion(0, unset, repeat("\U00018080", 4)));
  EXPECT_EQ(convert_easy("UTF-8", "\u65e5", "ISO-2022-JP"), "none");
  EXPECT_EQ(convert("UTF-8", "\u65e5", "ISO-2022-JP"), Conversion(0, unset, "\x1b$BF|\x1b(B"));
}

// Both were read before they were refused: the one by every conversion, the other by the direct
// one.
TEST(Iconv, RefusesAnInputThatIsNullOrLongerThanIcuTakes) {
  i18n_charset_t* utf8 = i18n_charset_open("UTF-8");
  for (const char* to : {"UTF-8", "ISO-8859-1", "Shift_JIS"}) {
    i18n_charset_t* target = i18n_charset_open(to);
    EXPECT_EQ(i18n_iconv_easy(utf8, nullptr, 1, target, nullptr, nullptr), nullptr) << to;
    EXPECT_STREQ(take(i18n_iconv_easy(utf8, nullptr, 0, target, nullptr, nullptr)).c_str(), "");
    const std::pair<const char*, size_t> inputs[] = {
        {nullptr, 1}, {"abcd", size_t{1} << 31}, {"abcd", static_cast<size_t>(-1)}};
    for (const auto& [input, size] : inputs) {
      char* output = nullptr;
      size_t position = unset, length = unset;
      EXPECT_EQ(i18n_iconv_easy_ex(utf8, input, size, &position, target, &output, &length), -3);
      EXPECT_TRUE(output == nullptr && length == 0 && position == 0) << to << ' ' << size;
    }
  }
}

TEST(IconvEasyEx, TellsWhatFailedAndWhere) {
  const std::tuple<const char*, const char*, std::string, size_t, Conversion> cases[] = {
      {"UTF-8", "ISO-8859-1", "Gr\u00f6\u00dfe", 0, {0, unset, "Gr\366\337e"}},
      {"UTF-16BE", "UTF-8", std::string("\0a\0\0", 4), 0, {0, unset, std::string("a\0", 2)}},
      {"UTF-8", "US-ASCII", "", 0, {0, unset, ""}},
      {"Shift_JIS", "ISO-2022-JP", "\x93\xfa\x96{\x8c\xea", 0, {0, unset, "\x1b$BF|K\\8l\x1b(B"}},
      {"UTF-8", "UTF-8", x(513), 0, {0, unset, x(513)}},
      // the input ends inside a character; it has an invalid sequence
      {"UTF-8", "UTF-16BE", "ab\xe3\x81", 0, {-1, 4, "none"}},
      {"UTF-8", "UTF-16BE", "ab\377cd", 0, {-3, 3, "none"}},
      {"UTF-8", "UTF-8", "ab\377cd", 9, {-3, 3, ""}},
      // the target lacks a character: where the one before it begins, 0 when there is none
      {"UTF-8", "ISO-8859-1", "a\u00e9\u20ac", 0, {-4, 1, "a\xe9"}},
      {"UTF-8", "ISO-8859-1", "\u20ac", 0, {-4, 0, ""}},
      {"UTF-8", "ISO-8859-1", "\u00e9\u00e8 \U0001f600", 0, {-4, 4, "\xe9\xe8 "}},
      {"UTF-8", "ISO-8859-1", x(2000) + "\u20ac", 0, {-4, 1999, x(2000)}},
      {"UTF-8", "ISO-2022-JP", repeat("\u3042", 1100) + "\u20ac", 0,
          {-4, 3 * 1099, "\x1b$B" + repeat("$\"", 1100)}},
      // the caller's buffer is too small
      {"UTF-8", "UTF-8", "a\u00e9xyz", 4, {-2, 3, "a\u00e9x"}},
      {"ISO-8859-1", "UTF-16BE", "abc", 4, {-2, 1, std::string("\0a\0b", 4)}},
      {"UTF-8", "UTF-8", "abc", 3, {0, unset, "abc"}},
      {"UTF-8", "UTF-16BE", x(2000), 2, {-2, 0, std::string("\0x", 2)}},
      {"UTF-8", "x11-compound-text", "abc", 2, {-2, 0, "ab"}},  // ICU writes no offsets
  };
  for (const auto& [from, to, input, capacity, expected] : cases) {
    SCOPED_TRACE(std::string(from) + " to " + to + ": " + input);
    EXPECT_EQ(convert(from, input, to, capacity), expected);
    const auto& [status, position, output] = expected;
    if (capacity != 0) continue;
    EXPECT_EQ(convert_easy(from, input, to), status == 0 ? output + '\0' : "none");
  }
  EXPECT_EQ(take_diagnostics(), "");
}

TEST(IconvEasyEx, AllocatesFourteenBytesAUnitAndOne) {
  convert("Shift_JIS", repeat("\x93\xfa", 1 << 20), "UTF-8");  // from then on by a table
  for (const char* from : {"UTF-8", "ISO-8859-1", "Shift_JIS"}) {
    for (const char* to : {"UTF-8", "EUC-JP"}) {
      for (const size_t units : {1, 3, 700, 2000}) {
        const std::string kanji = repeat("\x93\xfa", static_cast<int>(units));
        const std::string input =
            from == std::string_view("Shift_JIS") ? kanji : x(static_cast<int>(units));
        char* output = nullptr;
        size_t length, position;
        i18n_iconv_easy_ex(i18n_charset_open(from), input.data(), input.size(), &position,
            i18n_charset_open(to), &output, &length);
        EXPECT_GE(malloc_usable_size(output), 14 * units + 1) << from << to;
        EXPECT_LT(malloc_usable_size(output), 14 * units + 40) << from << to;
        i18n_iconv_free(output);
      }
    }
  }
  for (const size_t begin : {0, 1}) {  // converted in place
    std::string text = std::string(begin, '.') + "\u00e9\u00e8 \u20ac";
    char* output = text.data();
    size_t length = text.size(), position;
    EXPECT_EQ(
        i18n_iconv_easy_ex(i18n_charset_open("UTF-8"), text.data() + begin, text.size() - begin,
            &position, i18n_charset_open("ISO-8859-1"), &output, &length),
        -4);
    EXPECT_EQ(std::tuple(position, text.substr(0, length)), std::tuple(4u, "\xe9\xe8 "));
  }
  // Too little for one text: the target begins every text with four bytes.
  EXPECT_EQ(convert("UTF-8", "a", "ISO-2022-KR"), Conversion(0, unset, "\x1b$)Ca"));
  EXPECT_EQ(convert("UTF-8", "", "ISO-2022-KR"), Conversion(-2, 0, "\x1b"));
  EXPECT_EQ(convert_easy("UTF-8", "", "ISO-2022-KR"), std::string(1, '\0'));
}

// Tables know the length before they write; what is behind belongs to the caller.
TEST(IconvEasyEx, WritesNothingBehindTheResult) {
  const std::tuple<const char*, const char*, std::string> cases[] = {
      {"UTF-8", "KOI8-R", repeat("\u0416\u0443\u043a, ", 9)},
      {"UTF-8", "ISO-8859-1", repeat("\u00e9", 50)}, {"ISO-8859-1", "UTF-8", repeat("\xe9", 50)},
      {"UTF-8", "utf8", repeat("\u20ac", 30)}, {"UTF-8", "KOI8-R", repeat("\u0416", 40000)},
      {"ISO-8859-1", "KOI8-R", x(70000)}, {"KOI8-R", "UTF-8", repeat("\xc1", 70000)},
      {"ISO-8859-1", "UTF-8", repeat("a\xe9", 40000)}, {"UTF-8", "ISO-8859-1", x(70000)},
      {"UTF-8", "ASCII", x(60) + "\u00ad"}};
  for (const auto& [from_name, to_name, text] : cases) {
    i18n_charset_t* const from = i18n_charset_open(from_name);
    i18n_charset_t* const to = i18n_charset_open(to_name);
    const std::string whole = std::get<2>(convert(from_name, text, to_name));
    const bool vanishes = text.ends_with("\u00ad");
    for (const size_t more : {0, 1, 300}) {
      std::string buffer(whole.size() + more + 1, '*');
      char* output = buffer.data();
      size_t length = whole.size() + more, position;
      EXPECT_EQ(i18n_iconv_easy_ex(from, text.data(), text.size(), &position, to, &output, &length),
          vanishes && more == 0 ? -2 : 0);  // to ICU there is no room for what vanishes
      EXPECT_EQ(buffer, whole + std::string(more + 1, '*')) << to_name;
      if (vanishes) continue;
      auto easy_length = static_cast<int64_t>(length + more);
      EXPECT_EQ(i18n_iconv_easy(
                    from, text.data(), static_cast<int>(text.size()), to, output, &easy_length),
          output);
      EXPECT_EQ(
          buffer.substr(length), (more != 0 ? std::string(1, '\0') : "*") + std::string(more, '*'));
    }
    // What cannot be converted at the end is known before anything is written.
    std::string bad = text + "\xff", buffer(2 * text.size(), '*');
    char* output = buffer.data();
    size_t length = buffer.size(), position;
    if (std::string(from_name) != "UTF-8") continue;
    EXPECT_EQ(
        i18n_iconv_easy_ex(from, bad.data(), bad.size(), &position, to, &output, &length), -3);
    EXPECT_EQ(buffer, std::string(2 * text.size(), '*'));
  }
}

TEST(IconvEasyEx, ContinuesFromTheStateOfAFailure) {
  const Conversion shift_is_pending(-1, 1, "none");
  EXPECT_EQ(convert("SCSU", "\x01", "US-ASCII"), shift_is_pending);
  // It opens the next character, which then has no offset in the input that it ends.
  EXPECT_EQ(convert("SCSU", "a\xe9", "US-ASCII"), Conversion(-4, 0, "a"));
  EXPECT_EQ(convert("SCSU", "\x02", "US-ASCII"), shift_is_pending);
  EXPECT_EQ(convert_easy("SCSU", "a", "US-ASCII"), std::string("a\0", 2)) << "resets before use";
  EXPECT_EQ(convert("SCSU", "a", "US-ASCII"), Conversion(0, unset, "a")) << "and after it";
  // Of a character that was cut, the place in it is left; by a table, which it has from here on,
  // too.
  convert("Shift_JIS", repeat("\x93\xfa", 1 << 20), "UTF-8");
  EXPECT_EQ(convert("Shift_JIS", "a\x93", "UTF-8"), Conversion(-1, 2, "none"));
  EXPECT_EQ(convert("Shift_JIS", "\xfaz", "UTF-8"), Conversion(0, unset, "\u65e5z"));
  // What did not fit comes out first: the position counts it in, but it is of no input byte.
  EXPECT_EQ(convert("UTF-8", "\u20ac", "UTF-8", 1), Conversion(-2, 0, "\xe2"));
  EXPECT_EQ(convert("UTF-8", "a", "UTF-8", 1), Conversion(-2, 0, "\x82"));
  EXPECT_EQ(convert("UTF-8", "xy\u20ac", "UTF-8", 4), Conversion(-2, 2, "\xacxy\xe2"));
  const std::string rest = "\x82\xac";
  EXPECT_EQ(convert("ISO-8859-1", "abcd", "UTF-8"), Conversion(0, unset, rest + "abcd"));
  EXPECT_EQ(convert("UTF-8", "\u20ac", "UTF-8", 1), Conversion(-2, 0, "\xe2"));
  EXPECT_EQ(convert_easy("UTF-8", "", "UTF-8"), std::string(1, '\0'));
}

}  // namespace
