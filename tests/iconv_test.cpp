// Conversion handles and one-shot conversion.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <qorvii18n/i18n_iconv.h>
#include <unicode/ucnv.h>

#include <memory>
#include <string>

#include "support/diagnostics.h"

namespace {

struct Free {
  void operator()(char* buffer) const { i18n_iconv_free(buffer); }
};
using Buffer = std::unique_ptr<char, Free>;

TEST(IconvHandle, HasConvertersOfItsOwn) {
  i18n_charset_t* utf8 = i18n_charset_open("UTF-8");
  i18n_charset_t* jis = i18n_charset_open("ISO-2022-JP");
  i18n_iconv_t* handle = i18n_iconv_open(jis, utf8);
  i18n_iconv_t* other = i18n_iconv_open(jis, utf8);
  ASSERT_NE(handle, nullptr);
  EXPECT_NE(handle, other);
  i18n_iconv_reset(handle);
  i18n_iconv_close(handle);
  i18n_iconv_close(other);
  i18n_iconv_close(nullptr);
  i18n_iconv_free(nullptr);
  EXPECT_EQ(i18n_iconv(), 1);
  EXPECT_EQ(i18n_iconv(utf8, 2, "three"), 1);
  EXPECT_EQ(i18n_iconv_detect_codeset(), 0);
  EXPECT_EQ(i18n_iconv_detect_codeset("text", 4), 0);
  int64_t length = 0;
  Buffer still_usable(i18n_iconv_easy(utf8, "a", 1, jis, nullptr, &length));
  EXPECT_EQ(length, 1);
}

// ICU 72 cannot copy every converter: closing a copy of x11-compound-text broke the original.
TEST(IconvHandle, OfEveryCharsetCanBeOpenedAgain) {
  i18n_charset_t* utf8 = i18n_charset_open("UTF-8");
  for (i18n_charset_t** charset = i18n_charset_open_all(); *charset != nullptr; ++charset) {
    SCOPED_TRACE(i18n_charset_get_name(*charset));
    for (int round = 0; round < 2; ++round) {
      i18n_iconv_t* handles[] = {i18n_iconv_open(utf8, *charset), i18n_iconv_open(*charset, utf8)};
      for (i18n_iconv_t* handle : handles) {
        ASSERT_NE(handle, nullptr);
        i18n_iconv_reset(handle);
        i18n_iconv_close(handle);
      }
    }
    Buffer still_usable(i18n_iconv_easy(*charset, "", 0, utf8, nullptr, nullptr));
    EXPECT_NE(still_usable, nullptr);
  }
}

TEST(IconvEasy, AllocatesOutputWithANul) {
  struct {
    const char* from;
    const char* to;
    std::string input;
    std::string output;
  } cases[] = {
      {"US-ASCII", "UTF-8", "abc", "abc"},
      {"UTF-8", "ISO-8859-1",
       "Gr\xc3\xb6\xc3\x9f"
       "e",
       "Gr\xf6\xdf"
       "e"},
      {"Shift_JIS", "ISO-2022-JP", "\x93\xfa\x96{\x8c\xea", "\x1b$BF|K\\8l\x1b(B"},
      {"UTF-8", "UTF-16BE", std::string("a\0b", 3), std::string("\0a\0\0\0b", 6)},
      {"UTF-8", "UTF-8", "", ""},
  };
  for (const auto& c : cases) {
    int64_t length = -1;
    Buffer output(i18n_iconv_easy(i18n_charset_open(c.from), c.input.data(),
                                  static_cast<int>(c.input.size()), i18n_charset_open(c.to),
                                  nullptr, &length));
    ASSERT_NE(output, nullptr) << c.input;
    EXPECT_EQ(std::string(output.get(), static_cast<size_t>(length)), c.output);
    EXPECT_EQ(output.get()[length], '\0') << c.input;
  }
}

TEST(IconvEasy, FillsTheCallersBufferToTheLastByte) {
  i18n_charset_t* utf8 = i18n_charset_open("UTF-8");
  char buffer[4] = "...";
  int64_t length = 3;
  EXPECT_EQ(i18n_iconv_easy(utf8, "abc", 3, utf8, buffer, &length), buffer);
  EXPECT_EQ(std::string(buffer), "abc");
  length = 2;
  EXPECT_EQ(i18n_iconv_easy(utf8, "abc", 3, utf8, buffer, &length), nullptr);
  EXPECT_EQ(length, 3) << "the length that was needed";
  length = 77;
  EXPECT_EQ(i18n_iconv_easy(utf8, "\xff", 1, utf8, nullptr, &length), nullptr);
  EXPECT_EQ(length, 77) << "left alone when the input cannot be read";
  EXPECT_EQ(i18n_iconv_easy(utf8, "\xc3\xa9", 2, i18n_charset_open("US-ASCII"), nullptr, nullptr),
            nullptr);
  EXPECT_TRUE(take_diagnostics().empty());
}

constexpr size_t untouched = 4711;

struct ExCase {
  const char* from;
  const char* to;
  std::string input;
  size_t capacity;  // of the caller's buffer; 0: none is given
  int status;
  size_t position;
  std::string output;
};

TEST(IconvEasyEx, TellsWhatFailedAndWhere) {
  const ExCase cases[] = {
      {"US-ASCII", "UTF-8", "abc", 0, 0, untouched, "abc"},
      {"UTF-8", "US-ASCII", "", 0, 0, untouched, ""},
      {"Shift_JIS", "ISO-2022-JP", "\x93\xfa\x96{", 0, 0, untouched, "\x1b$BF|K\\\x1b(B"},
      // the input ends inside a character; it has an invalid sequence
      {"UTF-8", "UTF-16BE", "ab\xe3\x81", 0, -1, 4, ""},
      {"UTF-8", "UTF-16BE",
       "ab\xff"
       "cd",
       0, -3, 3, ""},
      // the target lacks a character: where the one before it begins, 0 when there is none
      {"UTF-8", "ISO-8859-1", "a\xc3\xa9\xe2\x82\xac", 0, -4, 1, "a\xe9"},
      {"UTF-8", "ISO-8859-1", "\xe2\x82\xac", 0, -4, 0, ""},
      {"UTF-8", "ISO-8859-1", "\xc3\xa9\xc3\xa8 \xf0\x9f\x98\x80", 0, -4, 4, "\xe9\xe8 "},
      // the caller's buffer is too small
      {"UTF-8", "UTF-8", "a\xc3\xa9xyz", 4, -2, 3, "a\xc3\xa9x"},
      {"ISO-8859-1", "UTF-16BE", "abc", 4, -2, 1, std::string("\0a\0b", 4)},
      {"UTF-8", "UTF-8", "abc", 3, 0, untouched, "abc"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.from) + " to " + c.to + ": " + c.input);
    const i18n_charset_t* to = i18n_charset_open(c.to);
    std::string callers(c.capacity + 1, '#');
    char* output = c.capacity != 0 ? callers.data() : nullptr;
    size_t length = c.capacity;
    size_t position = untouched;
    EXPECT_EQ(i18n_iconv_easy_ex(i18n_charset_open(c.from), c.input.data(), c.input.size(),
                                 &position, to, &output, &length),
              c.status);
    EXPECT_EQ(position, c.position);
    EXPECT_EQ(std::string(output != nullptr ? output : "", length), c.output);
    EXPECT_EQ(output == nullptr, c.status == -1 || c.status == -3);
    EXPECT_EQ(callers.back(), '#');
    if (c.capacity == 0) i18n_iconv_free(output);
  }
  EXPECT_TRUE(take_diagnostics().empty());
}

TEST(IconvEasyEx, ContinuesFromTheStateOfAFailure) {
  i18n_charset_t* scsu = i18n_charset_open("SCSU");
  i18n_charset_t* ascii = i18n_charset_open("US-ASCII");
  auto convert = [&](const std::string& input, size_t* position) {
    char* output = nullptr;
    size_t length = 0;
    const int status =
        i18n_iconv_easy_ex(scsu, input.data(), input.size(), position, ascii, &output, &length);
    i18n_iconv_free(output);
    return status;
  };
  size_t position = untouched;
  EXPECT_EQ(convert("\x01", &position), -1);
  // The shift byte is still pending, so the next character has no offset in the input that it ends.
  EXPECT_EQ(convert("a\xe9", &position), -4);
  EXPECT_EQ(position, 0u);
  EXPECT_EQ(convert("\x02", &position), -1);
  Buffer resets_before_and_after(i18n_iconv_easy(scsu, "a", 1, ascii, nullptr, nullptr));
  EXPECT_EQ(convert("a", &position), 0);
}

// Some of ICU's converters write past the offsets that were asked for, or do not write them all.
TEST(IconvEasyEx, StaysInBoundsForEveryCharset) {
  const std::string ascii = "The quick {brown} fox [jumps] over ~ the lazy dog; 0123456789 ^ | \\ ";
  std::string input;
  while (input.size() < 600) input += ascii;
  i18n_charset_t* utf8 = i18n_charset_open("UTF-8");
  i18n_charset_t** all = i18n_charset_open_all();
  for (int32_t i = 0; i < ucnv_countAvailable(); ++i) {
    SCOPED_TRACE(ucnv_getAvailableName(i));
    for (size_t capacity : {size_t{0}, size_t{1}, size_t{86}, size_t{6000}}) {
      std::string callers(capacity, '#');
      char* output = capacity != 0 ? callers.data() : nullptr;
      size_t length = capacity;
      size_t position = untouched;
      const int status =
          i18n_iconv_easy_ex(utf8, input.data(), input.size(), &position, all[i], &output, &length);
      EXPECT_EQ(position == untouched, status == 0);
      EXPECT_TRUE(status == 0 || position < input.size()) << position;
      if (capacity != 0) {
        EXPECT_LE(length, capacity);
      } else {
        i18n_iconv_free(output);
      }
      // Leaves no state behind for the next capacity.
      Buffer reset(i18n_iconv_easy(utf8, "", 0, all[i], nullptr, nullptr));
    }
  }
}

}  // namespace
