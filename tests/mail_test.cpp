// Fields and parts of mails, through the shared library: exact output, and where a failure points.
#include <qorvii18n/i18n_mail.h>
#include <unicode/ucnv.h>

#include <cstdint>
#include <cstring>
#include <string_view>

#include "support/testing.h"

namespace {

using namespace std::string_view_literals;

// Status, item, position.
using Error = std::tuple<i18n_mail_status_t, size_t, size_t>;
constexpr Error none = {I18N_MAIL_OK, 0, 0};

// A result, null as "(null)", and the error that was filled in.
struct Result {
  std::string text;
  Error error;
};

template <class Function, class... Arguments>
Result make(Function* function, Arguments... arguments) {
  i18n_mail_error_t filled = {I18N_MAIL_BAD_NAME, 77, 88};
  char* const made = function(arguments..., &filled);
  const std::string text = made != nullptr ? made : "(null)";
  i18n_mail_free(made);
  return {text, {filled.status, filled.item, filled.position}};
}

Result header(std::string_view text, const char* charset = nullptr,
    const char* mail_charset = nullptr, const char* name = "Subject") {
  return make(i18n_mail_header, name, text.data(), text.size(), charset, mail_charset);
}

struct Item {
  std::string name;
  const char* address;
};

Result addresses(const std::vector<Item>& items, const char* name = "To",
    const char* charset = nullptr, const char* mail_charset = nullptr,
    decltype(i18n_mail_addresses)* function = i18n_mail_addresses) {
  std::vector<i18n_mail_address_t> list;
  for (const Item& item : items) list.push_back({item.name.data(), item.name.size(), item.address});
  return make(function, name, list.data(), list.size(), charset, mail_charset);
}

Result address(const char* text, decltype(i18n_mail_addresses)* function = i18n_mail_addresses) {
  return addresses({{"", text}}, "To", nullptr, nullptr, function);
}

Result utf8_address(const char* text) { return address(text, i18n_mail_addresses_utf8); }

Result parameter(
    std::string_view value, const char* charset = nullptr, const char* name = "filename") {
  return make(i18n_mail_parameter, name, value.data(), value.size(), charset);
}

Result text_part(std::string_view text, const char* charset = nullptr,
    const char* mail_charset = nullptr, const char* subtype = "plain") {
  return make(i18n_mail_text, subtype, text.data(), text.size(), charset, mail_charset);
}

// Tables of large charsets have to be earned, by so much text.
void earn_tables(const char* charset) {
  EXPECT_EQ(text_part(std::string(1 << 20, 'a') + "\u65e5", nullptr, charset).error, none);
}

Result data_part(std::string_view bytes, const char* type = "application/pdf") {
  return make(i18n_mail_data, type, bytes.data(), bytes.size());
}

Result structured(const char* value, const char* name = "References") {
  return make(i18n_mail_structured, name, value);
}

Result date(std::int64_t seconds, int offset) {
  return make(i18n_mail_date, "Date", seconds, offset);
}

Result message_id(const char* domain) { return make(i18n_mail_message_id, domain); }

Result attachment(const char* type, std::string_view name, const char* charset = nullptr) {
  return make(i18n_mail_attachment, type, name.data(), name.size(), charset, "a", 1);
}

Result multipart(const std::vector<std::string>& parts, const char* subtype = "mixed") {
  std::vector<const char*> pointers;
  for (const std::string& part : parts) pointers.push_back(part != "null" ? part.c_str() : nullptr);
  return make(i18n_mail_multipart, subtype, pointers.data(), pointers.size());
}

// "name|address" of each item, then the status if it is not OK, item and position.
std::string parse(std::string_view list, const char* charset = nullptr) {
  i18n_mail_error_t error;
  size_t count = 77;
  i18n_mail_address_t* items =
      i18n_mail_parse_addresses(list.data(), list.size(), charset, &count, &error);
  std::string result;
  for (size_t i = 0; i < count; ++i) {
    EXPECT_EQ(items[i].length, std::strlen(items[i].name));
    result += std::string(items[i].name) + '|' + items[i].address + '\n';
  }
  EXPECT_EQ(items == nullptr, error.status != I18N_MAIL_OK) << list;
  i18n_mail_free(items);
  if (items != nullptr) return result;
  return std::to_string(error.status) + ' ' + std::to_string(error.item) + ' ' +
         std::to_string(error.position);
}

const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466";
const std::string family_b = "8J+RqOKAjfCfkanigI3wn5Gn4oCN8J+Rp";

TEST(MailHeader, KeepsPlainWordsAndEncodesTheRestWithItsBlanks) {
  const std::tuple<std::string, std::string> cases[] = {{"", ""},
      {"a =b? c=d", "a =?UTF-8?B?PWI/?= c=d"},
      // what looks like a word, or like its begin or end
      {"=?UTF-8?Q?a?= b", "=?UTF-8?B?PT9VVEYtOD9RP2E/PQ==?= b"}, {"x=?y", "=?UTF-8?Q?x=3D=3Fy?="},
      // blanks that a reader could lose
      {" a b", "=?UTF-8?Q?=20a?= b"}, {"  x", "=?UTF-8?B?ICB4?="},
      {"a b  c d", "a =?UTF-8?Q?b=20=20c?= d"}, {"a b= c ", "a =?UTF-8?B?Yj0gYyA=?="},
      {"a\tb", "=?UTF-8?B?YQli?="},
      {"\u00fc " + x(50) + "x \u00fc",
          "=?UTF-8?Q?=C3=BC=20" + x(46) + "?=\r\n =?UTF-8?Q?xxxxx=20=C3=BC?="},
      // neighbours make one word; the shorter encoding; Q when equal
      {"\u00fc \u00fc a", "=?UTF-8?B?w7wgw7w=?= a"},
      {"a \u00fcbungen b", "a =?UTF-8?Q?=C3=BCbungen?= b"}};
  for (const auto& [input, value] : cases) {
    EXPECT_EQ(header(input).text, "Subject: " + value) << input;
    EXPECT_EQ(header(input).error, none) << input;
  }
}

TEST(MailHeader, FoldsWhereReadersKeepEveryBlank) {
  const std::tuple<std::string, std::string> cases[] = {{x(67) + " y", x(67) + "\r\n y"},
      // never right after the colon
      {x(75) + " y", x(75) + "\r\n y"}, {x(932), x(932)},
      // words too long for any line are encoded
      {x(933), "=?UTF-8?Q?" + x(55) + "?=" + repeat("\r\n =?UTF-8?Q?" + x(63) + "?=", 13) +
                   "\r\n =?UTF-8?Q?" + x(59) + "?="},
      // an encoded word that would be split begins a line
      {x(50) + "x \u00fc", x(51) + "\r\n =?UTF-8?B?w7w=?="},
      // no fold between an encoded word and a plain one: on the next line both fit, or both are
      // encoded
      {x(50) + " \u00fc a", x(50) + "\r\n =?UTF-8?B?w7w=?= a"},
      {"\u00fc " + x(50), "=?UTF-8?B?w7w=?= " + x(50)},
      {"\u00fc x" + x(50) + " y", "=?UTF-8?Q?=C3=BC=20x" + x(45) + "?=\r\n =?UTF-8?Q?xxxxx?= y"}};
  for (const auto& [input, value] : cases) {
    EXPECT_EQ(header(input).text, "Subject: " + value) << input;
  }
  EXPECT_EQ(header("\u65e5\u672c", nullptr, nullptr, x(64).c_str()).text,
      x(64) + ": =?UTF-8?B?5pel5pys?=");
}

TEST(MailHeader, CutsWordsWhereEachDecodesAlone) {
  const std::string nihon = "\u65e5\u672c";
  const std::string thumb = "\U0001F44D\U0001F3FD";
  const std::tuple<std::string, const char*, std::string> cases[] = {
      // a B word in front of another is not padded
      {repeat("\u00fc", 30), "UTF-8",
          "=?UTF-8?B?" + repeat("w7zDvMO8", 6) + "?=\r\n =?UTF-8?B?" + repeat("w7zDvMO8", 4) +
              "?="},
      // clusters stay whole, if need be for the price of a Q word
      {repeat(thumb, 5), "UTF-8",
          "=?UTF-8?B?8J+RjfCfj73wn5GN8J+PvfCfkY3wn4+9?=\r\n =?UTF-8?B?8J+RjfCfj73wn5GN8J+PvQ==?="},
      // but not for the price of a padded word
      {family + family, "UTF-8",
          "=?UTF-8?B?" + family_b + "vCfkajigI3wn5Gp4oCN?=\r\n =?UTF-8?B?8J+Rp+KAjfCfkaY=?="},
      {"ab" + repeat("u\u0300", 20), "UTF-8",
          "=?UTF-8?Q?ab" + repeat("u=CC=80", 7) + "?=\r\n =?UTF-8?B?" + repeat("dcyA", 13) + "?="},
      // as full as they can be
      {repeat("\u20ac", 25), "ISO-8859-15", "=?ISO-8859-15?B?" + repeat("pKSk", 8) + "pA==?="},
      {repeat("\u0e01", 60), "TIS-620",
          "=?TIS-620?B?" + repeat("oaGh", 13) + "?=\r\n =?TIS-620?B?" + repeat("oaGh", 7) + "?="},
      // each word has its own shift states, and none is Q
      {repeat(nihon, 9) + "a" + nihon, "ISO-2022-JP",
          "=?ISO-2022-JP?B?GyRC" + repeat("RnxLXEZ8S1xGfEtc", 2) +
              "RnxLXEZ8GyhC?=\r\n =?ISO-2022-JP?B?GyRCS1xGfEtcGyhCYRskQkZ8S1wbKEI=?="},
      // four bytes each
      {repeat("\u0130\u2f30", 6), "GB18030",
          "=?GB18030?B?gTCQMoE5kDCBMJAygTmQMIEwkDKBOZAwgTCQMoE5kDCBMJAy?=\r\n "
          "=?GB18030?B?gTmQMIEwkDKBOZAw?="},
      // but where each prefix of a B word would be padded
      {"aa" + repeat("\u3042a", 5), "ISO-2022-JP",
          "=?ISO-2022-JP?Q?aa" + repeat("=1B$B$\"=1B(Ba", 3) + "?=\r\n =?ISO-2022-JP?B?" +
              repeat("GyRCJCIbKEJh", 2) + "?="},
      {"\u3042 =", "ISO-2022-JP", "=?ISO-2022-JP?B?GyRCJCIbKEIgPQ==?="},
      {"\u00a5a\u672c", "ISO-2022-JP", "=?ISO-2022-JP?B?GyhKXGEbJEJLXBsoQg==?="},
  };
  for (const bool by_tables : {false, true}) {
    if (by_tables) earn_tables("ISO-2022-JP"), earn_tables("GB18030");
    for (const auto& [input, charset, value] : cases) {
      EXPECT_EQ(header(input, nullptr, charset).text, "Subject: " + value) << input << by_tables;
    }
  }
}

TEST(MailAddresses, WriteNamesThatReadersTakeForOne) {
  const std::tuple<std::vector<Item>, std::string> cases[] = {
      {{{"John Q Doe", "a@b"}, {"", "c@d"}, {"E", "f@g"}}, "John Q Doe <a@b>, c@d, E <f@g>"},
      {{{"Klein, J.", "j@example.org"}}, "\"Klein, J.\" <j@example.org>"},
      {{{"a  b", "a@b"}}, "\"a  b\" <a@b>"}, {{{"a\"b\\", "a@b"}}, "\"a\\\"b\\\\\" <a@b>"},
      // encoded: outside ASCII, with outer blanks, controls, or what looks like a word
      {{{"J\u00fcrgen, Gro\u00df", "a@b"}}, "=?UTF-8?B?SsO8cmdlbiwgR3Jvw58=?= <a@b>"},
      {{{"\u00fcabcdefghijkl", "a@b"}}, "=?UTF-8?Q?=C3=BCabcdefghijkl?= <a@b>"},
      {{{"=?a?=", "a@b"}}, "=?UTF-8?B?PT9hPz0=?= <a@b>"},
      // domains outside ASCII
      {{{"", "a@k\u00f6ln.example"}}, "a@xn--kln-sna.example"},
      {{{"", "a@K\u00d6LN\u3002example"}}, "a@xn--kln-sna.example"},
      {{{"", "!#$%&'*+-/?=^_`{|}~.a@b_c"}}, "!#$%&'*+-/?=^_`{|}~.a@b_c"},
      {{{"", "a@0-a._b.XN--KLN-SNA.7.7.7.7"}}, "a@0-a._b.XN--KLN-SNA.7.7.7.7"},
      // folds: in front of an item, or in front of its address; names stay on one line
      {{{"", "a@b"}, {x(62), "a@b"}}, "a@b,\r\n " + x(62) + " <a@b>"},
      {{{"", "a@b"}, {x(75), "a@b"}}, "a@b,\r\n " + x(75) + "\r\n <a@b>"},
      {{{"", "a@b"}, {x(76), "a@b"}},
          "a@b,\r\n =?UTF-8?Q?" + x(63) + "?=\r\n =?UTF-8?Q?" + x(13) + "?= <a@b>"},
      {{{x(72), "a@b"}}, x(72) + "\r\n <a@b>"},
      {{{x(73), "a@b"}}, "=?UTF-8?Q?" + x(60) + "?=\r\n =?UTF-8?Q?xxxxxxxxxxxxx?= <a@b>"},
      // a single word if a line of its own holds it
      {{{"", "a@b"}, {x(57) + "\u00fc", "a@b"}},
          "a@b,\r\n =?UTF-8?Q?" + x(57) + "=C3=BC?=\r\n <a@b>"}};
  for (const auto& [items, value] : cases) {
    const Result result = addresses(items);
    EXPECT_EQ(result.text, "To: " + value);
    EXPECT_EQ(result.error, none);
  }
  const std::string longest = x(64) + "@" + x(63) + "." + x(63) + "." + std::string(61, 'y');
  EXPECT_EQ(addresses({{"a", longest.c_str()}, {"", "a@b"}}).text,
      "To: a\r\n <" + longest + ">,\r\n a@b");
  EXPECT_EQ(address(("a@" + repeat(repeat("\u65e5", 30) + ".", 3) + "b").c_str()).text,
      "To: a@" + repeat("xn--wgv" + std::string(29, 'a') + ".", 3) + "b");
  EXPECT_EQ(addresses({{"\xfc", "a@b"}}, "From", "latin1", "ISO-8859-15").text,
      "From: =?ISO-8859-15?Q?=FC?= <a@b>");
}

TEST(MailAddresses, MayHaveQuotedLocalPartsLiteralsAndUtf8) {
  for (const char* text :
      {"\"john doe\"@b", "\"a@b\\\"\\\\,<c>\"@d", "a@[127.0.0.1]", "\"(\"@[ipv6:::1]"}) {
    EXPECT_EQ(address(text).text, std::string("To: ") + text);
    EXPECT_EQ(utf8_address(text).text, std::string("To: ") + text);
  }
  const std::string text = "\u00fc\"\u65e5 \u672c\"@k\u00f6ln.example";
  EXPECT_EQ(utf8_address(text.c_str() + 2).text, "To: \"\u65e5 \u672c\"@xn--kln-sna.example");
  EXPECT_EQ(
      addresses({{"\u00fc", "a\u00fc@b"}}, "To", nullptr, nullptr, i18n_mail_addresses_utf8).text,
      "To: =?UTF-8?B?w7w=?= <a\u00fc@b>");
}

TEST(MailAddressList, IsReadAsPeopleWriteIt) {
  const std::tuple<std::string, std::string> cases[] = {{"", ""}, {" \t\r\n (a (b\\)) c) , ;", ""},
      {"undisclosed-recipients:;", ""},
      {"\"Klein, J.\" <j@example.org>, k@example.org", "Klein, J.|j@example.org\n|k@example.org\n"},
      {"J\u00fcrgen  Q.\r\n\tGro\u00df(x)\"\\\"a\\\\\"<j@k\u00f6ln.example>;",
          "J\u00fcrgen Q. Gro\u00df \"a\\|j@k\u00f6ln.example\n"},
      {"a (x) @ (y) b, <c@d> , \"\" <e@f>", "|a@b\n|c@d\n|e@f\n"},
      {"a@b; A, B: c@d, e <f@g>;h@i", "7 1 6"}, {"a@b; A \"B,\": c@d, e <f@g>;h@i;:", "7 4 30"},
      {"a@b; A \"B,\": c@d, e <f@g>;h@i", "|a@b\n|c@d\ne|f@g\n|h@i\n"},
      {"\"a\tb\"@[IPv6:::1], \u65e5@b", "|\"a b\"@[IPv6:::1]\n|\u65e5@b\n"},
      {"=?UTF-8?Q?a?= <a@b>", "=?UTF-8?Q?a?=|a@b\n"},
      // mistakes: what is missing, left open, out of place, or no address
      {"a@b, c", "7 1 6"}, {"Klein, j@b", "7 0 5"}, {"a b@c", "7 0 3"}, {"a@b c@d", "7 1 4"},
      {"a <b@c", "7 0 6"}, {"a <b@c> d", "7 1 8"}, {"a <>", "7 0 3"}, {"\"a", "7 0 2"},
      {"a@b (c", "7 0 6"}, {"a: b@c", "7 1 6"}, {"a: b@c, d: e@f;", "7 1 9"},
      {"<a@b>, <\u00fc@c.>", "7 1 13"}, {"a@b, c(x)@(y)d..e", "7 1 15"}, {"=?@b", "7 0 0"},
      {"a@[1.2", "7 0 6"}, {"a\v", "5 0 1"}, {"\xff", "3 0 0"}};
  for (const auto& [list, items] : cases) EXPECT_EQ(parse(list), items) << list;
  EXPECT_EQ(parse("\xfc <\xfc@b>", "latin1"), "\u00fc|\u00fc@b\n");
  EXPECT_EQ(parse("\xfc <\xfc@b>,", "UTF-7"), "3 0 0");
  EXPECT_EQ(parse("\xfc\xfc <a>", "latin1"), "7 0 5");
  EXPECT_EQ(parse(repeat("(", 100000)), "7 0 100000");
  EXPECT_EQ(parse(repeat("()", 100000)), "");
  EXPECT_EQ(parse(repeat("a@b,", 100)), repeat("|a@b\n", 100));
}

TEST(MailStructured, IsFoldedAtItsBlanks) {
  const std::string longest = x(998 - 12);
  EXPECT_EQ(structured("undisclosed-recipients:;", "To").text, "To: undisclosed-recipients:;");
  EXPECT_EQ(structured(("<a@b> " + x(67) + " <c@d>").c_str()).text,
      "References: <a@b>\r\n " + x(67) + " <c@d>");
  EXPECT_EQ(
      structured(("a  " + x(67) + "  b").c_str()).text, "References: a\r\n  " + x(67) + "  b");
  EXPECT_EQ(structured(longest.c_str()).text, "References: " + longest);
  EXPECT_EQ(date(1795438800, 60).text, "Date: Mon, 23 Nov 2026 14:00:00 +0100");
  EXPECT_EQ(date(-2208988800 + 5400, -90).text, "Date: Mon, 01 Jan 1900 00:00:00 -0130");
  EXPECT_EQ(date(951827696, 0).text, "Date: Tue, 29 Feb 2000 12:34:56 +0000");
  EXPECT_EQ(date(253402300799 - 1439 * 60, 1439).text, "Date: Fri, 31 Dec 9999 23:59:59 +2359");
  const std::string id = message_id("k\u00f6ln.example").text,
                    other = message_id("[127.0.0.1]").text;
  EXPECT_TRUE(id.starts_with("Message-ID: <") && id.ends_with("@xn--kln-sna.example>")) << id;
  EXPECT_EQ(id.find('@'), 13 + 32);
  EXPECT_TRUE(other.ends_with("@[127.0.0.1]>")) << other;
  EXPECT_NE(id.substr(0, id.find('@')), other.substr(0, other.find('@')));
}

TEST(MailParameter, IsPlainWhereEveryReaderTakesItSo) {
  const std::tuple<std::string, std::string> cases[] = {{"a.pdf", "filename=a.pdf"},
      {"", "filename=\"\""}, {x(65), "filename=" + x(65)},
      {x(66), "filename*0*=UTF-8''" + x(55) + ";\r\n filename*1*=" + x(11)},
      {"a\"b", "filename*=UTF-8''a%22b"}, {"a ", "filename*=UTF-8''a%20"},
      {"a'b'c", "filename=\"a'b'c\""}, {"*a%41", "filename=\"*a%41\""},
      {"a\tb", "filename*=UTF-8''a%09b"}, {"\u00dc-1_2.~", "filename*=UTF-8''%C3%9C-1_2.%7E"},
      {x(51) + "\u00fc", "filename*=UTF-8''" + x(50) + "x%C3%BC"},
      {x(52) + "\u00fc", "filename*0*=UTF-8''" + x(50) + "xx;\r\n filename*1*=%C3%BC"},
      // pieces end with whole characters
      {repeat("\u65e5", 7),
          "filename*0*=UTF-8''" + repeat("%E6%97%A5", 6) + ";\r\n filename*1*=%E6%97%A5"}};
  for (const auto& [value, written] : cases) {
    EXPECT_EQ(parameter(value).text, ";\r\n " + written);
    EXPECT_EQ(parameter(value).error, none);
  }
  EXPECT_EQ(parameter("\xfc", "latin1", "x").text, ";\r\n x*=UTF-8''%C3%BC");
}

std::string part(const std::string& type, const std::string& encoding, const std::string& body) {
  return "Content-Type: " + type + "\r\nContent-Transfer-Encoding: " + encoding + "\r\n\r\n" + body;
}

TEST(MailText, IsSentAsReadersGetItWhole) {
  const std::string ascii = "text/plain; charset=US-ASCII", utf8 = "text/plain; charset=UTF-8";
  const std::string qp = "quoted-printable";
  const std::tuple<std::string, std::string, std::string, std::string> cases[] = {
      {"", ascii, "7bit", ""},
      {"a\tb\nc\rd\r\n\r\ne", ascii, "7bit", "a\tb\r\nc\r\nd\r\n\r\ne\r\n"},
      {x(76), ascii, "7bit", x(76) + "\r\n"},
      // what is lost or changed on the way
      {x(76) + "y", ascii, qp, x(75) + "=\r\nxy\r\n"}, {"a \nb", ascii, qp, "a=20\r\nb\r\n"},
      {"a\t\nb", ascii, qp, "a=09\r\nb\r\n"}, {".\na", ascii, qp, "=2E\r\na\r\n"},
      {"From a\nFrom", ascii, qp, "=46rom a\r\nFrom\r\n"},
      // what a boundary can look like
      {"-\n--=_part\n---\n-- \n", ascii, qp, "-\r\n=2D-=3D_part\r\n=2D--\r\n=2D-=20\r\n"},
      {x(75) + "--=_part", ascii, qp, x(75) + "=\r\n=2D-=3D_part\r\n"},
      {x(75) + "-" + x(68), ascii, qp, x(75) + "=\r\n-" + x(68) + "\r\n"},
      {repeat("--\n", 6), ascii, "base64", repeat("LS0NCi0tDQotLQ0K", 2) + "\r\n"},
      {"a=b\x7fz\n", ascii, qp, "a=3Db=7Fz\r\n"},
      // an end that lies in two pieces, and one that ends a piece
      {x(2047) + "\nb", ascii, qp, repeat(x(75) + "=\r\n", 27) + x(22) + "\r\nb\r\n"},
      {"." + repeat(x(62) + "\r\n", 16), ascii, qp, "=2E" + repeat(x(62) + "\r\n", 16)},
      // lines that are cut: never inside an escape, and the next begins as a line must, too
      {x(74) + "= 12345678901234567890", ascii, qp, x(74) + "=\r\n=3D 12345678901234567890\r\n"},
      {x(75) + "From y", ascii, qp, x(75) + "=\r\n=46rom y\r\n"},
      {x(75) + "  ", ascii, qp, x(75) + "=\r\n =20\r\n"},
      {x(50) + std::string(30, ' ') + "x", ascii, qp,
          x(50) + std::string(25, ' ') + "=\r\n     x\r\n"},
      // the shorter one; quoted-printable when equal
      {"\u65e5\u672c\n", utf8, "base64", "5pel5pysDQo=\r\n"},
      {"\u00fcab\n", utf8, qp, "=C3=BCab\r\n"}};
  for (const auto& [input, type, encoding, body] : cases) {
    EXPECT_EQ(text_part(input).text, part(type, encoding, body)) << input;
    EXPECT_EQ(text_part(input).error, none);
  }
  EXPECT_EQ(text_part("\xfc", "latin1", "ISO-8859-15", "html").text,
      part("text/html; charset=ISO-8859-15", qp, "=FC\r\n"));
  const std::string nihon = "\u65e5\u672c", nihon_jis = "\x1b$BF|K\\\x1b(B";
  const std::tuple<std::string, std::string, std::string> japanese[] = {
      {nihon + "\na\tb\n\n", "7bit", nihon_jis + "\r\na\tb\r\n\r\n"},
      {repeat("\u672c", 35), "7bit", "\x1b$B" + repeat("K\\", 35) + "\x1b(B\r\n"},
      {repeat("\u672c", 35) + "a", "base64",
          "GyRC" + repeat("S1xLXEtc", 9) + "\r\nS1xLXEtcS1xLXEtcS1xLXBsoQmENCg==\r\n"},
      {nihon + "\n.", "base64", "GyRCRnxLXBsoQg0KLg0K\r\n"},
      {nihon + "\n--", "base64", "GyRCRnxLXBsoQg0KLS0NCg==\r\n"},
      {nihon + " \n", "base64", "GyRCRnxLXBsoQiANCg==\r\n"},
      {nihon + "\x01", "base64", "GyRCRnxLXBsoQgENCg==\r\n"},
      // ICU stays in JIS X 0201 at the end of a line
      {"\u00a5\n", "base64", "GyhKXA0KGyhC\r\n"}};
  for (const bool by_tables : {false, true}) {
    if (by_tables) earn_tables("ISO-2022-JP");
    for (const auto& [input, encoding, body] : japanese) {
      EXPECT_EQ(text_part(input, nullptr, "ISO-2022-JP").text,
          part("text/plain; charset=ISO-2022-JP", encoding, body))
          << input << by_tables;
    }
  }
  EXPECT_EQ(text_part("", nullptr, nullptr, x(50).c_str()).text,
      part("text/" + x(50) + ";\r\n charset=US-ASCII", "7bit", ""));
}

TEST(MailType, HasParameters) {
  EXPECT_EQ(text_part("", nullptr, nullptr, "calendar;a=b*c ; d='%;e=\"; y*\"").text,
      part("text/calendar; charset=US-ASCII; a=\"b*c\"; d=\"'%\"; e=\"; y*\"", "7bit", ""));
  EXPECT_EQ(data_part("", "text/plain; Charset=ISO-8859-15; boundary=\"\"").text,
      part("text/plain; Charset=ISO-8859-15; boundary=\"\"", "base64", ""));
  // a fold leaves room for the ';' of what follows
  EXPECT_EQ(data_part("", ("a/b;c=" + x(50) + "xxxx;d=e").c_str()).text,
      part("a/b; c=" + x(50) + "xxxx;\r\n d=e", "base64", ""));
  EXPECT_EQ(data_part("", ("a/b;c=" + x(50) + "xxxxx;d=e").c_str()).text,
      part("a/b;\r\n c=" + x(50) + "xxxxx; d=e", "base64", ""));
}

TEST(MailMultipart, HasABoundaryThatNoPartHas) {
  const std::string text = text_part("--=_1_=\n").text, data = data_part("").text;
  const auto whole = [](const std::string& type, int number,
                         const std::vector<std::string>& parts) {
    const std::string boundary = "=_" + std::to_string(number) + "_=";
    std::string wanted =
        "Content-Type: multipart/" + type + "; boundary=\"" + boundary + "\"\r\n\r\n";
    for (const std::string& part : parts) wanted += "--" + boundary + "\r\n" + part + "\r\n";
    return wanted + "--" + boundary + "--\r\n";
  };
  EXPECT_EQ(multipart({text}).text, whole("mixed", 1, {text}));
  const std::string one = multipart({text, data}, "alternative").text;
  EXPECT_EQ(one, whole("alternative", 1, {text, data}));
  const std::string two = multipart({one, "Content-ID: <a@b>\r\n" + one}).text;
  EXPECT_EQ(two, whole("mixed", 2, {one, "Content-ID: <a@b>\r\n" + one}));
  EXPECT_EQ(multipart({two, text}).text, whole("mixed", 3, {two, text}));
  // what others wrote
  EXPECT_EQ(
      multipart({"A: b\r\n\r\n--=_2_=-\r\n--=_2_=\r\n--=_01_=\r\n=_1_=\r\n"}).text.substr(0, 46),
      "Content-Type: multipart/mixed; boundary=\"=_1_=");
  EXPECT_EQ(
      multipart({"A:\r\n--=_2_=\r\n--=_1_=x\r\n--=_99999999999999999999_=\r\n"}).text.substr(41, 5),
      "=_3_=");
}

TEST(MailAttachment, IsAPartWithAFileName) {
  const std::pair<const char*, std::string> cases[] = {
      {"a b", ";\r\n filename=\"a b\""}, {"\xfc", ";\r\n filename*=UTF-8''%C3%BC"}, {"", ""}};
  for (const auto& [name, written] : cases) {
    EXPECT_EQ(attachment("text/csv;header=absent", name, "latin1").text,
        part("text/csv; header=absent\r\nContent-Disposition: attachment" + written, "base64",
            "YQ==\r\n"));
  }
}

TEST(MailData, IsBase64InEndedLinesWhichJoin) {
  const std::string bytes = repeat("\xff\x01z", 19 * 5) + "q";
  std::string lines;
  for (size_t i = 0; i < bytes.size(); i += 114) {
    const std::string piece = bytes.substr(i, 114);
    std::string out(i18n_mail_base64_size(piece.size()) + 1, '#');
    EXPECT_EQ(i18n_mail_base64(out.data(), piece.data(), piece.size()), out.size() - 1);
    EXPECT_EQ(out.back(), '#');
    lines += out.substr(0, out.size() - 1);
  }
  EXPECT_EQ(data_part("", "a/b").text + lines, data_part(bytes, "a/b").text);
  EXPECT_EQ(i18n_mail_base64(nullptr, nullptr, 0), 0U);
  constexpr size_t whole = SIZE_MAX / 78;
  for (const auto& [size, encoded] : {std::pair<size_t, size_t>(57, 78), {58, 84},
           {whole * 57, whole * 78}, {whole * 57 + 57, SIZE_MAX}, {SIZE_MAX, SIZE_MAX}}) {
    EXPECT_EQ(i18n_mail_base64_size(size), encoded);
  }
  EXPECT_EQ(data_part("").text, part("application/pdf", "base64", ""));
  EXPECT_EQ(data_part("\0\r\n"sv, "a/b").text, part("a/b", "base64", "AA0K\r\n"));
  EXPECT_EQ(data_part(std::string(58, '\0')).text,
      part("application/pdf", "base64", std::string(76, 'A') + "\r\nAA==\r\n"));
}

constexpr auto bad_name = I18N_MAIL_BAD_NAME, bad_value = I18N_MAIL_BAD_VALUE,
               bad_address = I18N_MAIL_BAD_ADDRESS, forbidden = I18N_MAIL_FORBIDDEN_CHARACTER,
               lacking = I18N_MAIL_LACKING_CHARACTER, invalid = I18N_MAIL_INVALID_TEXT,
               unknown = I18N_MAIL_UNKNOWN_CHARSET, needs_utf8 = I18N_MAIL_NEEDS_SMTPUTF8;

TEST(MailFailure, TellsTheFirstFaultAndWhere) {
  const std::string domain253 = repeat(x(63) + ".", 3) + x(61);
  EXPECT_EQ(message_id(domain253.substr(1).c_str()).error, none);
  // Arguments are looked at in their order.
  const std::tuple<Result, Error> cases[] = {
      {header("\xff", "no-such", "no-such", ""), {bad_name, 0, 0}},
      {header("\xff", "no-such", "no-such"), {unknown, 0, 0}}, {header("\n\xff"), {invalid, 0, 1}},
      {header("\u00fc\n\u20ac", nullptr, "latin1"), {forbidden, 0, 2}},
      {addresses({}, "To", "no-such"), {bad_address, 0, 0}},
      {addresses({{"a", "a@b"}, {"b\xff", "a"}}), {invalid, 1, 1}},
      {addresses({{"a", "a@b"}, {"b", "a"}, {"\xff", ""}}), {bad_address, 1, 1}},
      // names
      {header("", nullptr, nullptr, "Subject\r\nX"), {bad_name, 0, 7}},
      {header("", nullptr, nullptr, x(65).c_str()), {bad_name, 0, 64}},
      {parameter("", nullptr, x(65).c_str()), {bad_name, 0, 40}},
      {data_part("", ("a/b;c=*" + x(992)).c_str()), {bad_name, 0, 4 + 994}},
      {multipart({"A: b\r\n"}, "mixed; boundary=x"), {bad_name, 0, 7}},
      {attachment("Message/rfc822", ""), {bad_name, 0, 0}},
      {attachment("multipart/mixed", "\n", "no-such"), {bad_name, 0, 0}},
      {attachment("a/b", "\xff", "no-such"), {unknown, 0, 0}},
      {attachment("a/b", "a\n"), {forbidden, 0, 1}},
      // parts
      {multipart({}), {bad_value, 0, 0}}, {multipart({"A: b\r\n", "null"}), {bad_value, 1, 0}},
      {multipart({"A b: c\r\n"}), {bad_value, 0, 1}},
      {multipart({"A: b\r\n\r\nc"}), {bad_value, 0, 9}},
      {multipart({"A: b\nc\r\n"}), {bad_value, 0, 4}},
      {multipart({"A: \u00fc\r\n"}), {bad_value, 0, 3}},
      {multipart({"A:\r\n" + x(999) + "\r\n"}), {bad_value, 0, 4 + 998}},
      // values
      {structured(""), {bad_value, 0, 0}}, {structured(nullptr), {bad_value, 0, 0}},
      {structured(" a"), {bad_value, 0, 0}}, {structured("a "), {bad_value, 0, 1}},
      {structured("a\tb"), {bad_value, 0, 1}}, {structured("a\nb"), {forbidden, 0, 1}},
      {structured(("a " + x(999)).c_str()), {bad_value, 0, 2 + 997}},
      {structured("a", "B:"), {bad_name, 0, 1}}, {date(0, 1440), {bad_value, 0, 0}},
      {date(-2208988801, 0), {bad_value, 0, 0}}, {date(253402300799, 1), {bad_value, 0, 0}},
      {date(INT64_MAX, 0), {bad_value, 0, 0}}, {date(INT64_MIN, -1439), {bad_value, 0, 0}},
      {message_id(nullptr), {bad_address, 0, 0}}, {message_id("a.b>"), {bad_address, 0, 3}},
      {message_id(domain253.c_str()), {bad_address, 0, 252}},
      {data_part("", "a/b\r\nX: y"), {bad_name, 0, 3}},
      // local parts outside ASCII
      {address("a\u00fc@b"), {needs_utf8, 0, 1}},
      {address("\"\u65e5\"@k\u00f6ln.example"), {needs_utf8, 0, 1}},
      {utf8_address((repeat("\u65e5", 22) + "@b").c_str()), {bad_address, 0, 64}},
      // forbidden characters
      {header("a\0"sv), {forbidden, 0, 1}}, {header("\u0084\u2027\x1b\x1f\x1c"), {forbidden, 0, 7}},
      {header("\v"), {forbidden, 0, 0}}, {header("\f"), {forbidden, 0, 0}},
      {header("\x1c"), {forbidden, 0, 0}}, {header("\x1d"), {forbidden, 0, 0}},
      {header("\x1e"), {forbidden, 0, 0}}, {header("\u00fc\u0085"), {forbidden, 0, 2}},
      {parameter("\u202a\u2028"), {forbidden, 0, 3}},
      {addresses({{"\u2029", "a@b"}}), {forbidden, 0, 0}},
      {header("a\x85", "ISO-8859-1"), {forbidden, 0, 1}},
      {addresses({{"", "a@b"}, {"\n", ""}}), {forbidden, 1, 0}},
      {text_part("a\r\nb\0"sv), {forbidden, 0, 4}},
      // invalid texts
      {header("\u00fc\xed\xa0\x80"), {invalid, 0, 2}},
      {header("\x1b$BF|\x1b(Ba\xff", "ISO-2022-JP"), {invalid, 0, 9}},
      {header("\xed\xa0\x80z\xff", "CESU-8"), {invalid, 0, 0}},
      {header("a", "x11-compound-text"), {unknown, 0, 0}},
      // characters that the mail charset lacks, one that shows nothing
      {header("\u00fc\u20ac", nullptr, "latin1"), {lacking, 0, 2}},
      {header("a\u200db", nullptr, "latin1"), {lacking, 0, 1}},
      {text_part("\r\r\n\u00fc\u20ac", nullptr, "latin1"), {lacking, 0, 5}},
      // for each euro sign, ICU writes two offsets
      {header(repeat("\x1b\x65", 650) + "\r", "gsm-03.38-2009"), {forbidden, 0, 1300}},
      // after any escape sequence
      {header("a\x1b$BF|K\\", "ISO-2022-JP", "latin1"), {lacking, 0, 4}}};
  int row = 0;
  for (const auto& [result, error] : cases) {
    EXPECT_EQ(result.error, error) << "row " << row;
    EXPECT_EQ(result.text, "(null)") << "row " << row++;
  }
  EXPECT_EQ(i18n_mail_header("", nullptr, 0, nullptr, nullptr, nullptr), nullptr);
  EXPECT_STREQ(i18n_mail_status_text(bad_address), "bad address");
}

TEST(MailFailure, PointsIntoSubtypesAndAddresses) {
  const std::pair<const char*, size_t> subtypes[] = {{"plain; x", 8}, {"plain ", 6}, {"plain;", 6},
      {"plain; Charset=x", 7}, {"plain;a=b;A=c", 10}, {"plain;a*=b", 7}, {"plain;a=", 8},
      {"plain;a=\"b=?c\"", 10}, {"plain;a=\"b", 10}, {"plain;a=\"\\\"", 9},
      {"plain;a=\"\u00fc\"", 9}};
  for (const auto& [subtype, position] : subtypes) {
    const Error error = {bad_name, 0, position};
    EXPECT_EQ(text_part("", nullptr, nullptr, subtype).error, error) << subtype;
  }
  const std::pair<std::string, size_t> bad_addresses[] = {{"a.@b", 2}, {"a@b..c", 4},
      {"a@b>, <c@d", 3}, {"a@\u00fc\xff", 4}, {"a@b\uff1ec.d", 2}, {x(65) + "@y", 64},
      {x(64) + "@" + repeat(x(63) + ".", 2) + x(62), 254},
      {x(64) + "@\u00fc." + repeat(x(63) + ".", 2) + x(60), 65},
      // quoted local parts and literals
      {"\"\"@b", 1}, {"\"a", 2}, {"\"a\"b@c", 3}, {"\"a\tb\"@c", 2}, {"\"\\-a\"@b", 2},
      {"\"=\\?a\"@b", 1}, {'"' + x(63) + "\"@b", 64}, {"a@[127.0.0.01]", 2}, {"a@[::1]", 2},
      {"a@[1.2.3.4", 10}, {"a@[1.2.3.4]b", 11},
      // outside ASCII
      {"\u00fc@b.", 5}, {"a\xff@b", 1}, {"a\u0085@b", 1}, {"\"a\u3000\"@b", 2}, {"a\u2028@b", 1},
      {"\u00fc=?@b", 2},
      // what some readers decode into two addresses, and what programs take for an option
      {"a=?utf-8?q?victim=40evil.example=2C?=@b", 1}, {"-oQ/tmp@b", 0},
      // domains that servers refuse
      {"a@b.-c", 4}, {"a@b-.c", 3}, {"a@b.c-", 5}, {"a@b.c!d", 5}, {"a@=?utf-8?q?b?=", 2},
      {"a@" + x(64), 65}, {"a@b.xn--a", 4}, {"a@b.XN--\u00fc", 2}, {"a@127.0.0.1", 2},
      {"a@\uff11.2.3.4", 2}, {"a@\u00fc" + repeat("\u00ad", 600), 2}};
  for (const auto& [text, position] : bad_addresses) {
    for (auto* const function : {i18n_mail_addresses, i18n_mail_addresses_utf8}) {
      const Result result = address(text.c_str(), function);
      EXPECT_EQ(result.error, Error(bad_address, 0, position)) << text;
      EXPECT_EQ(result.text, "(null)") << text;
    }
  }
}

// Where a character begins, prefixes of the text show: the longest that has what is before it.
TEST(MailFailure, PointsAtTheCharacterInEveryCharset) {
  int texts = 0;
  for (int i = 0; i < ucnv_countAvailable(); ++i) {
    const std::string name = ucnv_getAvailableName(i);
    // these pass over bytes at the end without a complaint
    if (name == "UTF-7" || name == "IMAP-mailbox-name" || name == "HZ") continue;
    for (const std::string character : {"\u00fc", "\u0434", "\u05d0", "\u0627", "\u0e01", "\u3042",
             "\u65e5", "\uac00", "\u20ac"}) {
      const std::string utf8 = "aB" + repeat(character, 2) + "c";
      UErrorCode status = U_ZERO_ERROR;
      std::string bytes(64, '\0');
      bytes.resize(static_cast<size_t>(
          ucnv_convert(name.c_str(), "UTF-8", bytes.data(), 64, utf8.c_str(), -1, &status)));
      if (header(bytes, name.c_str()).text != header(utf8).text) continue;  // not in the charset
      size_t position = 0;
      for (size_t size = 0; size < bytes.size(); ++size) {
        const Result prefix = header(bytes.substr(0, size), name.c_str(), "US-ASCII");
        if (prefix.text == "Subject: aB") position = size;
      }
      const Error error = {lacking, 0, position};
      EXPECT_EQ(header(bytes, name.c_str(), "US-ASCII").error, error) << name;
      ++texts;
    }
  }
  EXPECT_GT(texts, 500);
}

TEST(MailCharset, WritesStandardNamesOnly) {
  const std::tuple<const char*, const char*> cases[] = {{"utf8\r\n", "UTF-8"},
      {"x-utf_8j", "UTF-8"}, {"sjis", "Shift_JIS"}, {"ibm-943", "Shift_JIS"},
      {"latin1", "ISO-8859-1"}, {"windows-1252", "windows-1252"}, {"us-ascii", "US-ASCII"},
      {"ISO_2022,locale=ja,version=0", "ISO-2022-JP"}, {"ISO-2022-JP-2", "ISO-2022-JP"},
      {"ks_c_5601-1987", "EUC-KR"}, {"cp1363", "EUC-KR"}, {"ibm-874", "TIS-620"}};
  for (const auto& [charset, name] : cases) {
    EXPECT_EQ(header("  ", nullptr, charset).text, "Subject: =?" + std::string(name) + "?B?ICA=?=");
  }
  for (const char* charset :
      {"UTF-16", "UTF-16LE", "UTF-32", "UTF-7", "IMAP-mailbox-name", "HZ", "ISO-2022-KR", "SCSU",
          "BOCU-1", "CESU-8", "ibm-37", "ibm-5478_P100-1995", "Adobe-Standard-Encoding", "LMBCS-1",
          "ISO-8859-14", "ISO-2022-CN", "Big5-HKSCS", "IBM850", "IBM864", "macintosh", "hp-roman8",
          "x11-compound-text", "UTF-8,version=1", "ISO-2022-JP,a\r\nX: y=", ",UTF-8", "", "no-such",
          "UTF-8------------------------------------------------------------"}) {
    const Error error = {I18N_MAIL_UNKNOWN_MAIL_CHARSET, 0, 0};
    EXPECT_EQ(header("a", nullptr, charset).error, error) << charset;
  }
}

// The tool that asks all readers' decoders is slow; a character of each rule.
TEST(MailCharset, LacksWhatReadersTakeForSomethingElse) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      // charset, what it has, what it lacks beside
      {"UTF-8", "\ue000\u0084\U00100000\x1a", ""}, {"ISO-8859-5", "\u0434\u00a0\x1a\x7f", "\u0084"},
      {"windows-1252", "\u20ac\u2019", "\u0081"},
      {"GB18030", "\u20ac\U00020000\u9fbc\ufe1a", "\ue000"},
      {"GB18030", "\U000effff", "\U00100000"}, {"GB18030", "\u1e3e", "\u1e3f"},
      {"GBK", "\u3007", "\u20ac"}, {"GB2312", "\u3005", "\u3007"},
      {"Big5", "\u4e00\u7c72", "\u2460"}, {"Big5", "\u4e42", "\u7881"},
      {"Big5", "\u2500", "\u2574"}, {"EUC-KR", "\uac00\u3163", "\u3164"},
      {"ISO-2022-JP", "\u65e5\u00a5\u2500", "\u2460"}, {"ISO-2022-JP", "\u30fc", "\uff5e"},
      {"Shift_JIS", "\u65e5-\uff9f", "\u2460"}, {"Shift_JIS", "\u7199\uff61", "\u7e8a"},
      {"Shift_JIS", "\\~", "\x7f"}, {"EUC-JP", "\u65e5\uff71\u4e02", "\u2460"},
      {"EUC-JP", "\u7199", "\u7e8a"}, {"TIS-620", "\u0e01\u0e5b\x1a", "\u2026"},
      {"IBM866", "\u0434\x1b", "\x1a"}, {"KOI8-U", "\u0491\u2563", "\u255d"},
      {"windows-1253", "\u03b1\u00b5", "\u00aa"}};
  for (const char* const charset : {"GB18030", "GBK", "Big5", "Shift_JIS", "EUC-JP"}) {
    earn_tables(charset);
  }
  for (const auto& [charset, has, lacks] : cases) {
    const std::string text = std::string(has) + lacks;
    const Error error = {lacking, 0, std::strlen(has)};
    EXPECT_EQ(header(has, nullptr, charset).error, none) << charset << ' ' << has;
    if (*lacks == '\0') continue;
    EXPECT_EQ(header(text, nullptr, charset).error, error) << charset << ' ' << lacks;
    EXPECT_EQ(text_part(text + "\u20ac\ue000", nullptr, charset).error, error) << charset;
  }
  // an ASCII text is none in the mail charset
  EXPECT_EQ(text_part("\x0e\x0f\x1b$B\x1a", nullptr, "ISO-2022-JP").text,
      part("text/plain; charset=US-ASCII", "base64", "Dg8bJEIaDQo=\r\n"));
}

}  // namespace
