// The MIME functions on real texts, through the shared library.
#include <qorvii18n/i18n_mime.h>
#include <unicode/ucnv.h>

#include "support/testing.h"

namespace {

using Encode = char* (*)(const char*, const char*, const char*);
constexpr Encode qp = i18n_mime_encode_qp, b64 = i18n_mime_encode_b64;
constexpr Encode header_qp = i18n_mime_encode_header_qp, header_b64 = i18n_mime_encode_header_b64;

constexpr const char* nihongo_sjis = "\x93\xfa\x96{\x8c\xea";
constexpr const char* nihongo_utf8 = "\u65e5\u672c\u8a9e";
constexpr const char* nihongo_word = "=?UTF-8?B?5pel5pys6Kqe?=";

TEST(MimeEncode, FixedEncodings) {
  const std::tuple<Encode, const char*, const char*, std::string, std::string> cases[] = {
      {qp, "UTF-8", "UTF-8", "Gr\u00f6\u00dfe = 1 \n", "Gr=C3=B6=C3=9Fe =3D 1 =0A"},
      {qp, "UTF-8", "ISO-8859-1", "Gr\u00f6\u00dfe ", "Gr=F6=DFe=20"},
      {b64, "UTF-8", "UTF-8", nihongo_utf8, "5pel5pys6Kqe"},
      {b64, "UTF-8", "UTF-8", x(500),
          repeat("eHh4", 19) + repeat("\r\n" + repeat("eHh4", 18), 8) + "\r\n" + repeat("eHh4", 3) +
              "eHg="},
      {b64, "Shift_JIS", "ISO-2022-JP", nihongo_sjis, "GyRCRnxLXDhsGyhC"},
      // equal names: the bytes of a body pass through even when they are none of the charset's
      {qp, "no-such", "no-such", "a=\xff", "a=3D=FF"},
      {header_qp, "UTF-8", "ISO-8859-1", "F\u00e4lt", "=?ISO-8859-1?Q?F=E4lt?="},
      {header_qp, "UTF-8", "utf8", "", "=?utf8?Q?\?="},
      {header_b64, "UTF-8", "UTF-8", nihongo_utf8, nihongo_word},
      {header_b64, "Shift_JIS", "ISO-2022-JP", nihongo_sjis, "=?ISO-2022-JP?B?GyRCRnxLXDhsGyhC?="},
      // 256 bytes, which fill the last block of the output
      {header_qp, "UTF-8", "UTF-8", x(199),
          "=?UTF-8?Q?" + x(63) + repeat("?=\r\n\t=?UTF-8?Q?" + x(60), 2) + "?=\r\n\t=?UTF-8?Q?" +
              x(16) + "?="},
      // words of whole characters
      {header_b64, "UTF-8", "UTF-8", repeat("\u20ac", 15) + "ab",
          "=?UTF-8?B?" + repeat("4oKs", 14) + "?=\r\n\t=?UTF-8?B?4oKsYWI=?="},
      // one unit more than is converted at once; the 86th of these characters has too many bytes
      {header_qp, "UTF-8", "UTF-8", repeat("\u20ac", 87),
          "=?UTF-8?Q?" + repeat("=E2=82=AC", 7) +
              repeat("?=\r\n\t=?UTF-8?Q?" + repeat("=E2=82=AC", 6), 13) +
              "=E2?=\r\n\t=?UTF-8?Q?=82=AC=E2=82=AC?="},
      {header_b64, "UTF-8", "UTF-8", x(87),
          "=?UTF-8?B?" + repeat("eHh4", 14) + "eHg=?=\r\n\t=?UTF-8?B?" + repeat("eHh4", 13) +
              "eHg=?=\r\n\t=?UTF-8?B?eHg=?="},
      // what shows nothing is left out where the target lacks it: the first chunk has one character
      {header_b64, "UTF-8", "ISO-8859-1", "x" + repeat("\u200b", 85) + "abc",
          "=?ISO-8859-1?B?eA==?=\r\n\t=?ISO-8859-1?B?YWJj?="}};
  for (const auto& [encode, from, to, input, encoded] : cases) {
    EXPECT_EQ(take(encode(input.c_str(), from, to)), encoded);
  }
  EXPECT_EQ(take_diagnostics(), "");
}

// How many escapes a long text has, is guessed from 64 places in it.
TEST(MimeEncode, LongTextCanDifferFromWhatIsLookedAt) {
  const std::string seen = x(1024);
  const std::string utf8 = repeat(seen + repeat("\u00e9", 1536), 64);
  const std::string latin1 = repeat(seen + repeat("\xe9", 1536), 64);
  EXPECT_EQ(take(qp(utf8.c_str(), "UTF-8", "ISO-8859-1")),
      take(qp(latin1.c_str(), "ISO-8859-1", "ISO-8859-1")));
}

TEST(MimeEncode, FailureGivesTheInputBackAndIsReported) {
  const std::string cannot_open = "6: Unable to open a UConverter for charset no-such";
  const std::tuple<Encode, const char*, const char*, const char*, std::string> cases[] = {
      {qp, nullptr, "UTF-8", "a=b", ""}, {qp, "UTF-8", nullptr, "a=b", ""},
      {b64, "no-such", "UTF-8", "a=b", cannot_open},
      {header_qp, "UTF-8", "no-such", "a=b", cannot_open},
      {header_qp, "no-such", "nor-this", "a=b", cannot_open},
      {header_qp, "UTF-8", "ISO-8859-1", "ab\xff", input_failure("\\xff", 2)},
      // another spelling of the name is converted, and so checked
      {qp, "UTF-8", "utf-8", "ab\xff", input_failure("\\xff", 2)},
      {b64, "UTF-8", "ISO-8859-1", "ab\u20ac", target_failure("\\xe2\\x82\\xac", 2, "\\x20ac")}};
  for (const auto& [encode, from, to, input, report] : cases) {
    EXPECT_EQ(take(encode(input, from, to)), input);
    EXPECT_EQ(take_diagnostics(), report);
  }
}

// A name and its word's other characters take 65 bytes of a line; what is left is for the text.
TEST(MimeEncode, NamesCanBeTooLongForWords) {
  const std::string b_report = "get_limit_byte_size() > 0 @ lib/i18n/front";
  const std::string q_report = "num_bytes <= get_num_bytes_avail() @ lib/i18n/i18n_mime_utils";
  for (int size = 55; size <= 64; ++size) {
    const std::string name = "UTF-8,x=" + x(size - 8);
    const bool is_refused = size >= 62;
    EXPECT_EQ(take(header_b64("xz", "UTF-8", name.c_str())),
        is_refused ? "xz" : "=?" + name + "?B?eHo=?=");
    EXPECT_EQ(take_diagnostics(), is_refused ? b_report : "") << size;
    EXPECT_EQ(take(header_qp("\u20ac", "UTF-8", name.c_str())), "=?" + name + "?Q?=E2=82=AC?=");
    EXPECT_EQ(take_diagnostics(), size > 56 ? q_report : "") << size;
  }
}

TEST(MimeEncode, ChoosesByTheFractionOfEscapes) {
  using Case = std::tuple<const char*, const char*, double, const char*, i18n_mime_encoding_t,
      const char*, const char*>;
  const Case cases[] = {{"UTF-8", "UTF-8", 1.01, "\u00e9", I18N_MIME_QP, "UTF-8", "=C3=A9"},
      {"UTF-8", "UTF-8", 1.01, "", I18N_MIME_B64, "UTF-8", ""},
      // the bytes counted are those of the source, though the target is 7-bit
      {"shift_jis", nullptr, 0.3, nihongo_sjis, I18N_MIME_B64, "ISO-2022-JP", "GyRCRnxLXDhsGyhC"},
      {"shift_jis", "UTF-8", 0.3, nihongo_sjis, I18N_MIME_B64, "UTF-8", "5pel5pys6Kqe"},
      {"UTF-8", nullptr, 0.3, "abc", I18N_MIME_NONE, "", "abc"},
      {"no-such", "UTF-8", 0.3, "abc", I18N_MIME_NONE, "UTF-8", "abc"},
      // failed midway: the choice stands beside the copy
      {"UTF-8", "US-ASCII", 0.51, "ab\u00e9", I18N_MIME_QP, "US-ASCII", "ab\u00e9"}};
  for (const auto& [from, to, threshold, input, chosen, to_charset, encoded] : cases) {
    auto encoding = static_cast<i18n_mime_encoding_t>(99);
    char* target = nullptr;
    EXPECT_EQ(take(i18n_mime_encode(input, from, to, threshold, &encoding, &target)), encoded);
    EXPECT_EQ(encoding, chosen) << input;
    EXPECT_EQ(take(target), to_charset) << input;
    EXPECT_EQ(take(i18n_mime_encode(input, from, to, threshold, nullptr, nullptr)), encoded);
  }
  take_diagnostics();
}

TEST(MimeEncode, ChoosesForHeadersByTheHeaderTable) {
  const std::tuple<const char*, const char*, double, const char*, const char*> cases[] = {
      // one byte in two is a blank, which only words must escape
      {"UTF-8", "UTF-8", 0.5, "a b c ", "=?UTF-8?B?YSBiIGMg?="},
      {"UTF-8", "UTF-8", 0.51, "a b c ", "=?UTF-8?Q?a=20b=20c=20?="},
      {"SHIFT_JIS", nullptr, 0.5, nihongo_sjis, nihongo_word},
      {"SHIFT_JIS", "ISO-2022-JP", 0.5, nihongo_sjis, "=?ISO-2022-JP?B?GyRCRnxLXDhsGyhC?="},
      {"UTF-8", "UTF-8", 2, "", "=?UTF-8?B?\?="},
      {"UTF-8", "UTF-8", 2, "\xff", "\xff"},  // converted even between equal names
  };
  for (const auto& [from, to, threshold, input, encoded] : cases) {
    EXPECT_EQ(take(i18n_mime_encode_header(input, from, to, threshold)), encoded);
  }
  take_diagnostics();
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
  EXPECT_EQ(take(i18n_mime_easy_encode_header(nihongo_sjis, 0.3)), nihongo_word);
  EXPECT_EQ(take(i18n_mime_easy_encode_header_b64(nihongo_sjis)), nihongo_word);
  EXPECT_EQ(take(i18n_mime_easy_encode_header_qp("\x93\xfa")), "=?UTF-8?Q?=E6=97=A5?=");
  set_default_charset("UTF-8");
}

TEST(MimeNames, FindTheMailCharsetOfEveryAlias) {
  UErrorCode status = U_ZERO_ERROR;
  std::vector<const char*> aliases = {"S-h-I-f-T_jIs"};
  for (uint16_t i = ucnv_countAliases("shift_jis", &status); i-- > 0;) {
    aliases.push_back(ucnv_getAlias("shift_jis", i, &status));
  }
  EXPECT_GT(aliases.size(), 1u);
  for (const char* alias : aliases) {
    EXPECT_STREQ(i18n_mime_get_body_to_charset_name(alias), "ISO-2022-JP") << alias;
    EXPECT_STREQ(i18n_mime_get_header_to_charset_name(alias), "UTF-8") << alias;
  }
  for (const char* other : {"UTF-8", "EUC-JP", "shift jis", ""}) {
    EXPECT_EQ(i18n_mime_get_body_to_charset_name(other), nullptr) << other;
    EXPECT_EQ(i18n_mime_get_header_to_charset_name(other), nullptr) << other;
  }
}

TEST(MimeNames, AreNormalisedByteByByte) {
  const char* cases[][2] = {
      {"ISO-2022-JP", "iso2022jp"}, {"---", ""}, {"\u00c4AZ_@[`{", "\u00c4az_@[`{"}};
  for (const auto& [name, normalised] : cases) {
    EXPECT_EQ(take(i18n_mime_transform_charset_name(name)), normalised);
  }
  i18n_mime_free(nullptr);
}

}  // namespace
