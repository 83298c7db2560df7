// The MIME functions on real texts, through the shared library.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qorvii18n/i18n_mime.h>
#include <unicode/ucnv.h>

#include <memory>
#include <string>

#include "support/default_charset.h"
#include "support/diagnostics.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Takes over a string of the library.
std::string take(char* text) {
  std::unique_ptr<char, void (*)(void*)> owned(text, i18n_mime_free);
  return owned.get();
}

using Encode = char* (*)(const char*, const char*, const char*);

struct FixedCase {
  Encode encode;
  const char* from;
  const char* to;
  std::string input;
  std::string encoded;
};

constexpr const char* nihongo_sjis = "\x93\xfa\x96{\x8c\xea";
constexpr const char* nihongo_utf8 = "\xe6\x97\xa5\xe6\x9c\xac\xe8\xaa\x9e";

TEST(MimeEncode, FixedEncodings) {
  const FixedCase cases[] = {
      {i18n_mime_encode_qp, "UTF-8", "UTF-8",
       "Gr\xc3\xb6\xc3\x9f"
       "e = 1 \n",
       "Gr=C3=B6=C3=9Fe =3D 1 =0A"},
      {i18n_mime_encode_qp, "UTF-8", "ISO-8859-1",
       "Gr\xc3\xb6\xc3\x9f"
       "e ",
       "Gr=F6=DFe=20"},
      {i18n_mime_encode_qp, "UTF-8", "UTF-8", "", ""},
      {i18n_mime_encode_b64, "UTF-8", "UTF-8", nihongo_utf8, "5pel5pys6Kqe"},
      {i18n_mime_encode_b64, "Shift_JIS", "ISO-2022-JP", nihongo_sjis, "GyRCRnxLXDhsGyhC"},
      {i18n_mime_encode_b64, "UTF-8", "UTF-8", "", ""},
      // equal names: the bytes of a body pass through even when they are none of the charset's
      {i18n_mime_encode_qp, "UTF-8", "UTF-8", "\xff", "=FF"},
      {i18n_mime_encode_qp, "no-such", "no-such", "a=b", "a=3Db"},
      {i18n_mime_encode_header_qp, "UTF-8", "UTF-8", "Keith Moore?",
       "=?UTF-8?Q?Keith=20Moore=3F?="},
      {i18n_mime_encode_header_qp, "UTF-8", "ISO-8859-1", "Patrik F\xc3\xa4ltstr\xc3\xb6m",
       "=?ISO-8859-1?Q?Patrik=20F=E4ltstr=F6m?="},
      {i18n_mime_encode_header_qp, "UTF-8", "utf8", "a", "=?utf8?Q?a?="},
      {i18n_mime_encode_header_b64, "UTF-8", "UTF-8", nihongo_utf8, "=?UTF-8?B?5pel5pys6Kqe?="},
      {i18n_mime_encode_header_b64, "Shift_JIS", "ISO-2022-JP", nihongo_sjis,
       "=?ISO-2022-JP?B?GyRCRnxLXDhsGyhC?="},
      {i18n_mime_encode_header_b64, "UTF-8", "UTF-8", "", "=?UTF-8?B?\?="},
      {i18n_mime_encode_header_qp, "UTF-8", "UTF-8", "", "=?UTF-8?Q?\?="},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(take(c.encode(c.input.c_str(), c.from, c.to)), c.encoded);
  }
  EXPECT_THAT(take_diagnostics(), IsEmpty());
}

TEST(MimeEncode, FoldsLongTexts) {
  std::string input, qp_word, words;
  for (int i = 0; i < 100; ++i) input += "\xe2\x82\xac";
  const std::string body = take(i18n_mime_encode_qp(input.c_str(), "UTF-8", "UTF-8"));
  EXPECT_EQ(body.find("=\r\n"), 75u);
  EXPECT_EQ(body.find("=\r\n", 78), 78u + 72u);
  const std::string header = take(i18n_mime_encode_header_b64(input.c_str(), "UTF-8", "UTF-8"));
  size_t begin = 0, end;
  while ((end = header.find("\r\n\t", begin)) != std::string::npos) {
    EXPECT_LE(end - begin, 72u);
    EXPECT_EQ(header.substr(begin, 10), "=?UTF-8?B?");
    EXPECT_EQ(header.substr(end - 2, 2), "?=");
    begin = end + 3;
  }
  EXPECT_EQ(header.substr(begin, 10), "=?UTF-8?B?");
}

// Output of exactly a number of blocks is neither cut nor padded.
TEST(MimeEncode, FlattensWholeBlocks) {
  for (size_t size = 180; size < 420; ++size) {
    const std::string text(size, 'x');
    std::string encoded = take(i18n_mime_encode_qp(text.c_str(), "UTF-8", "UTF-8"));
    for (size_t at; (at = encoded.find("=\r\n")) != std::string::npos;) encoded.erase(at, 3);
    EXPECT_EQ(encoded, text);
  }
}

TEST(MimeEncode, FailureGivesTheInputBackAndIsReported) {
  const std::string cannot_open = "6: Unable to open a UConverter for charset ";
  const std::string long_name = "UTF-8,version=0,version=0,version=0,version=0,version=0,version=0";
  struct {
    Encode encode;
    const char* from;
    const char* to;
    std::string input;
    std::vector<std::string> reports;
  } cases[] = {
      {i18n_mime_encode_qp, nullptr, "UTF-8", "a=b", {}},
      {i18n_mime_encode_qp, "UTF-8", nullptr, "a=b", {}},
      {i18n_mime_encode_header_b64, nullptr, nullptr, "a=b", {}},
      {i18n_mime_encode_b64, "no-such", "UTF-8", "a=b", {cannot_open + "no-such"}},
      {i18n_mime_encode_header_qp, "UTF-8", "no-such", "a=b", {cannot_open + "no-such"}},
      // a name that leaves a word no room for one group of base64
      {i18n_mime_encode_header_b64,
       "UTF-8",
       long_name.c_str(),
       "a=b",
       {"get_limit_byte_size() > 0 @ lib/i18n/front"}},
      {i18n_mime_encode_header_qp,
       "UTF-8",
       "ISO-8859-1",
       "ab\xff",
       {"6: Error converting input to Unicode\nThe first several bytes starting at the beginning "
        "of "
        "the problematic MB character have the following hexadecimal representation: \\xff.\nThe "
        "beginning of the problematic MB character is 2 bytes away from the beginning of the input "
        "string.\n"}},
      {i18n_mime_encode_b64,
       "UTF-8",
       "ISO-8859-1",
       "ab\xe2\x82\xac",
       {"6: Error converting unicode to output.\nThe hexadecimal representation of the problematic "
        "MB character is: \\xe2\\x82\\xac.\nIt is 2 bytes away from the beginning of the input "
        "string\nIts unicode hexadecimal representation is \\x20ac.\n"}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(take(c.encode(c.input.c_str(), c.from, c.to)), c.input);
    EXPECT_EQ(take_diagnostics(), c.reports);
  }
}

struct ChoiceCase {
  const char* from;
  const char* to;
  double threshold;
  std::string input;
  i18n_mime_encoding_t encoding;
  std::string target;
  std::string encoded;
};

TEST(MimeEncode, ChoosesByTheFractionOfEscapes) {
  const ChoiceCase cases[] = {
      {"UTF-8", "UTF-8", 0.51, "====abcd", I18N_MIME_QP, "UTF-8", "=3D=3D=3D=3Dabcd"},
      {"UTF-8", "UTF-8", 0.5, "====abcd", I18N_MIME_B64, "UTF-8", "PT09PWFiY2Q="},
      {"UTF-8", "UTF-8", 0.01, "abc", I18N_MIME_QP, "UTF-8", "abc"},
      {"UTF-8", "UTF-8", 0, "abc", I18N_MIME_B64, "UTF-8", "YWJj"},
      {"UTF-8", "UTF-8", 1.01, "\xc3\xa9", I18N_MIME_QP, "UTF-8", "=C3=A9"},
      {"UTF-8", "UTF-8", 1.01, "", I18N_MIME_B64, "UTF-8", ""},
      // the bytes counted are those of the source, though the target is 7-bit
      {"shift_jis", nullptr, 0.3, nihongo_sjis, I18N_MIME_B64, "ISO-2022-JP", "GyRCRnxLXDhsGyhC"},
      {"UTF-8", nullptr, 0.3, "abc", I18N_MIME_NONE, "", "abc"},
      {"no-such", "UTF-8", 0.3, "abc", I18N_MIME_NONE, "UTF-8", "abc"},
      // failed midway: the choice stands beside the copy
      {"UTF-8", "US-ASCII", 0.9, "ab\xc3\xa9", I18N_MIME_QP, "US-ASCII", "ab\xc3\xa9"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.input);
    auto encoding = static_cast<i18n_mime_encoding_t>(99);
    char* target = nullptr;
    EXPECT_EQ(
        take(i18n_mime_encode(c.input.c_str(), c.from, c.to, c.threshold, &encoding, &target)),
        c.encoded);
    EXPECT_EQ(encoding, c.encoding);
    EXPECT_EQ(take(target), c.target);
    EXPECT_EQ(take(i18n_mime_encode(c.input.c_str(), c.from, c.to, c.threshold, nullptr, nullptr)),
              c.encoded);
  }
  take_diagnostics();
}

TEST(MimeEncode, ChoosesForHeadersByTheHeaderTable) {
  // One byte in two is a blank, which only words must escape.
  EXPECT_EQ(take(i18n_mime_encode_header("a b c ", "UTF-8", "UTF-8", 0.5)), "=?UTF-8?B?YSBiIGMg?=");
  EXPECT_EQ(take(i18n_mime_encode_header("a b c ", "UTF-8", "UTF-8", 0.51)),
            "=?UTF-8?Q?a=20b=20c=20?=");
  EXPECT_EQ(take(i18n_mime_encode_header(nihongo_sjis, "SHIFT_JIS", nullptr, 0.5)),
            "=?UTF-8?B?5pel5pys6Kqe?=");
  EXPECT_EQ(take(i18n_mime_encode_header("", "UTF-8", "UTF-8", 2)), "=?UTF-8?B?\?=");
  EXPECT_EQ(take(i18n_mime_encode_header("a", "UTF-8", nullptr, 2)), "a");
}

TEST(MimeEasy, GoesFromTheDefaultCharset) {
  char* target;
  i18n_mime_encoding_t encoding;
  EXPECT_EQ(take(i18n_mime_easy_encode("a=b", 2, &encoding, &target)), "a=b");
  EXPECT_EQ(take(target), "");
  EXPECT_EQ(encoding, I18N_MIME_NONE);
  EXPECT_EQ(take(i18n_mime_easy_encode_header_qp("a=b")), "a=b");
  set_default_charset("Shift_JIS");
  EXPECT_EQ(take(i18n_mime_easy_encode(nihongo_sjis, 0.3, &encoding, &target)), "GyRCRnxLXDhsGyhC");
  EXPECT_EQ(take(target), "ISO-2022-JP");
  EXPECT_EQ(encoding, I18N_MIME_B64);
  const std::string b_word = "=?UTF-8?B?5pel5pys6Kqe?=";
  EXPECT_EQ(take(i18n_mime_easy_encode_header(nihongo_sjis, 0.3)), b_word);
  EXPECT_EQ(take(i18n_mime_easy_encode_header_b64(nihongo_sjis)), b_word);
  EXPECT_EQ(take(i18n_mime_easy_encode_header_qp("\x93\xfa")), "=?UTF-8?Q?=E6=97=A5?=");
  set_default_charset("UTF-8");
}

TEST(MimeNames, FindTheMailCharsetOfEveryAlias) {
  UErrorCode status = U_ZERO_ERROR;
  const uint16_t count = ucnv_countAliases("shift_jis", &status);
  ASSERT_GT(count, 0);
  for (uint16_t i = 0; i < count; ++i) {
    const char* alias = ucnv_getAlias("shift_jis", i, &status);
    EXPECT_STREQ(i18n_mime_get_body_to_charset_name(alias), "ISO-2022-JP") << alias;
    EXPECT_STREQ(i18n_mime_get_header_to_charset_name(alias), "UTF-8") << alias;
  }
  EXPECT_STREQ(i18n_mime_get_body_to_charset_name("S-h-I-f-T_jIs"), "ISO-2022-JP");
  for (const char* other : {"UTF-8", "EUC-JP", "shift jis", ""}) {
    EXPECT_EQ(i18n_mime_get_body_to_charset_name(other), nullptr) << other;
    EXPECT_EQ(i18n_mime_get_header_to_charset_name(other), nullptr) << other;
  }
  i18n_mime_free(nullptr);
}

TEST(MimeNames, AreNormalisedByteByByte) {
  struct {
    const char* name;
    const char* normalised;
  } cases[] = {{"ISO-2022-JP", "iso2022jp"},
               {"shift_jis", "shift_jis"},
               {"", ""},
               {"---", ""},
               {"\xc3\x84Z_@[`{", "\xc3\x84z_@[`{"}};
  for (const auto& c : cases) {
    EXPECT_EQ(take(i18n_mime_transform_charset_name(c.name)), c.normalised);
  }
}

}  // namespace
