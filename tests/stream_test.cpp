// Text in pieces, through the shared library: every case whole and cut everywhere, with any room.
#include <qorvii18n/i18n_text.h>

#include <memory>
#include <string_view>

#include "support/testing.h"

namespace {

using namespace std::string_view_literals;

// Status, character, position, line, column.
using Error = std::tuple<i18n_text_status_t, uint32_t, uint64_t, uint64_t, uint64_t>;
constexpr i18n_text_error_t not_filled = {I18N_TEXT_FULL, 7, 7, 7, 7};
Error to_tuple(const i18n_text_error_t& error) {
  return {error.status, error.character, error.position, error.line, error.column};
}

using Converter = std::unique_ptr<i18n_text_converter_t, decltype(&i18n_text_close)>;

Converter open(const char* from, const char* to) {
  i18n_text_status_t status = I18N_TEXT_FULL;
  Converter converter(i18n_text_open(from, to, &status), i18n_text_close);
  EXPECT_EQ(status, I18N_TEXT_OK) << from << " to " << to;
  return converter;
}

struct Result {
  i18n_text_status_t status;
  std::string output;
  Error error;
};

Error get_error(const i18n_text_converter_t* converter) {
  i18n_text_error_t error = not_filled;
  i18n_text_get_error(converter, &error);
  return to_tuple(error);
}

// In pieces of a size, of which the last is empty, with so much room a call.
Result convert(
    i18n_text_converter_t* converter, std::string_view text, size_t piece_size, size_t room) {
  Result result = {I18N_TEXT_OK, "", {}};
  std::string buffer(room, '?');
  i18n_text_reset(converter);
  for (bool is_last = false; result.status == I18N_TEXT_OK && !is_last;) {
    const std::string_view piece = text.substr(0, piece_size);
    text.remove_prefix(piece.size());
    is_last = piece.empty();
    const char* input = piece.data();
    do {
      char* output = buffer.data();
      result.status = i18n_text_convert(
          converter, &input, piece.data() + piece.size(), &output, output + room, is_last);
      EXPECT_TRUE(result.status != I18N_TEXT_FULL || output != buffer.data());
      result.output.append(buffer.data(), output);
    } while (result.status == I18N_TEXT_FULL && !testing::Test::HasFailure());
  }
  result.error = get_error(converter);
  return result;
}

struct Case {
  const char *from, *to;
  std::string_view text, output;
  Error error = {};
};

void check(const Case& expected) {
  SCOPED_TRACE(testing::Message() << expected.from << " to " << expected.to << ": "
                                  << testing::PrintToString(expected.text.substr(0, 80)));
  i18n_text_error_t error = not_filled;
  size_t length = 77;
  char* const whole = i18n_text_convert_all(
      expected.from, expected.to, expected.text.data(), expected.text.size(), &length, &error);
  EXPECT_EQ(to_tuple(error), expected.error);
  const i18n_text_status_t status = std::get<0>(expected.error);
  if (status == I18N_TEXT_OK) {
    ASSERT_NE(whole, nullptr);
    EXPECT_EQ(std::string(whole, length + 1), std::string(expected.output) + '\0');
  } else {
    EXPECT_EQ(whole, nullptr);
    EXPECT_EQ(length, 0u);
  }
  i18n_text_free(whole);

  const Converter converter = open(expected.from, expected.to);
  const size_t size = expected.text.size();
  for (const size_t piece : {size + 1, size_t{1}, size_t{2}, size_t{3}, size_t{7}, size_t{4099}}) {
    for (const size_t room : {4 * size + 300, size_t{1}, size_t{5}}) {
      const Result result = convert(converter.get(), expected.text, piece, room);
      EXPECT_EQ(std::tuple(result.status, result.output, result.error),
          std::tuple(status, expected.output, expected.error))
          << "pieces of " << piece << ", room of " << room;
    }
  }
}

constexpr auto invalid = I18N_TEXT_INVALID, incomplete = I18N_TEXT_INCOMPLETE,
               lacking = I18N_TEXT_LACKING;

// The replay of fuzz inputs has every charset, beside ICU; here are those that need care.
TEST(Text, ConvertsEveryKindOfCharset) {
  const Case cases[] = {{"UTF-8", "UTF-8", "", ""},
      // a state, and the way back
      {"UTF-8", "ISO-2022-JP", "a\u65e5", "a\x1b$BF|\x1b(B"},
      {"ISO-2022-JP", "ISO-2022-JP", "\x1b$BF|", "\x1b$BF|\x1b(B"},
      {"UTF-8", "ISO-2022-KR", "", "\x1b$)C"}, {"HZ", "UTF-8", "~~~{VP~}~\n.", "~\u4e2d."},
      {"UTF-8", "IMAP-mailbox-name", "a&\u00e4", "a&-&AOQ-"},
      // byte order marks
      {"UTF-16", "UTF-8", "\xfe\xff\x00\x61\xd8\x3d\xde\x00"sv, "a\U0001F600"},
      {"UTF-16", "UTF-8", "\xff\xfe\x61\x00"sv, "a"},
      {"UTF-32", "UTF-8", "\xff\xfe\x00\x00\x61\x00\x00\x00"sv, "a"},
      {"UTF-8", "UTF-8", "\ufeffa", "\ufeffa"},
      // what comes before or after decides
      {"UTF-8", "SCSU", "\u0436\u0436\u4e2d\u0436", "\x12\xb6\xb6\x0fN-\xe2\xb6"},
      {"SCSU", "UTF-8", "\x12\xb6\xb6\x0eN-\xb6", "\u0436\u0436\u4e2d\u0436"},
      {"UTF-8", "LMBCS-1", "a\u0436\u0436", "a\x05\xe6\x05\xe6"},
      // one code for two code points, in the middle and at the end, and one of them alone
      {"UTF-8", "ibm-16684", "\u304b\u309a\u304b", "\xec\xb5\x44\x86"},
      {"ibm-16684", "UTF-8", "\xec\xb5\x44\x86", "\u304b\u309a\u304b"},
      // an escape in place of a lead byte
      {"gsm-03.38-2009", "UTF-8", "\x1b\x65", "\u20ac"},
      // a joiner that belongs to the sign before it
      {"UTF-8", "ISCII,version=0", "\u0915\u094d\u200d\u0915", "\xef\x42\xb3\xe8\xe9\xb3"},
      // nothing is left of it in the next text
      {"UTF-8", "ISCII,version=0", "\u0915\r", "\xef\x42\xb3\r"},
      // private use with a code of its own
      {"UTF-8", "Shift_JIS", "\ue000", "\xf0\x40"}, {nullptr, nullptr, "\u00e4", "\u00e4"}};
  for (const Case& each : cases) check(each);
}

TEST(Text, TellsWhereItEnds) {
  const Case cases[] = {{"UTF-8", "UTF-8", "a\xff", "a", {invalid, 0, 1, 1, 2}},
      {"UTF-8", "UTF-8", "\u65e5\xe6\x97x", "\u65e5", {invalid, 0, 3, 1, 2}},
      {"UTF-8", "UTF-8", "\u65e5\xe6\x97", "\u65e5", {incomplete, 0, 3, 1, 2}},
      {"UTF-8", "ISO-8859-1", "\u00e4\u20ac", "\xe4", {lacking, 0x20ac, 2, 1, 2}},
      // after an escape sequence, and the target goes back
      {"ISO-2022-JP", "UTF-8", "\x1b$B\xff!", "", {invalid, 0, 3, 1, 1}},
      {"ISO-2022-JP", "UTF-8", "\x1b$BF", "", {incomplete, 0, 3, 1, 1}},
      {"ISO-2022-JP", "UTF-8", "a\x1b$", "a", {incomplete, 0, 1, 1, 2}},
      {"UTF-8", "ISO-2022-JP", "\u65e5\u00fc", "\x1b$BF|\x1b(B", {lacking, 0xfc, 3, 1, 2}},
      {"UTF-8", "ISO-2022-KR", "\xff", "\x1b$)C", {invalid, 0, 0, 1, 1}},
      // the first of two errors
      {"UTF-8", "ISO-8859-1", "\u20ac\xff", "", {lacking, 0x20ac, 0, 1, 1}},
      {"UTF-8", "ISO-8859-1", "\xff\u20ac", "", {invalid, 0, 0, 1, 1}},
      // half of a pair
      {"UTF-7", "UTF-8", "a+2D0-", "a", {invalid, 0, 2, 1, 2}},
      {"UTF-7", "UTF-8", "+2D3eANg93gDYxN\xc7", "\U0001F600\U0001F600", {invalid, 0, 1, 1, 3}},
      {"UTF-7", "UTF-8", "+2D0AYQ-", "", {invalid, 0, 1, 1, 1}},
      {"CESU-8", "UTF-8", "a\xed\xb8\x80", "a", {invalid, 0, 1, 1, 2}},
      {"CESU-8", "UTF-8", "a\xed\xa0\xbd\xff", "a", {invalid, 0, 1, 1, 2}},
      {"UTF-16LE", "UTF-8", "\x3d\xd8"sv, "", {incomplete, 0, 0, 1, 1}},
      {"UTF-16", "UTF-8", "\xfe\xff\xdc\x00"sv, "", {invalid, 0, 2, 1, 1}},
      // what ICU drops, on its own
      {"HZ", "UTF-8", "~{VPV", "\u4e2d", {incomplete, 0, 4, 1, 2}},
      {"HZ", "UTF-8", "a~", "a", {incomplete, 0, 1, 1, 2}},
      {"UTF-8", "US-ASCII", "a\u00ad", "a", {lacking, 0xad, 1, 1, 2}},
      {"UTF-8", "ISCII,version=0", "a\u200c", "a", {lacking, 0x200c, 1, 1, 2}},
      // what ICU writes and reads as something else
      {"UTF-8", "Shift_JIS", "a\uf860", "a", {lacking, 0xf860, 1, 1, 2}},
      {"UTF-8", "ISCII,version=0", "\u0915\u200d", "\xef\x42\xb3", {lacking, 0x200d, 3, 1, 2}},
      {"UTF-8", "ISCII,version=0", "\u0915\u094d\u094d", "\xef\x42\xb3\xe8",
          {lacking, 0x94d, 6, 1, 3}},
      {"UTF-8", "ISCII,version=1", "\ra\u0915", "\ra", {lacking, 0x915, 2, 2, 2}},
      {"UTF-8", "ISCII,version=0", "\u0a15\u0a71\u0a15", "\xef\x4b\xb3", {lacking, 0xa71, 3, 1, 2}},
      {"UTF-8", "LMBCS-1", "a\uffff", "a", {lacking, 0xffff, 1, 1, 2}},
      // a switch of scripts before what is refused
      {"UTF-8", "ISCII,version=0", "\u0915\u0984", "\xef\x42\xb3", {lacking, 0x984, 3, 1, 2}},
      // a character that is held until the end
      {"ISCII,version=0", "US-ASCII", "a\xb3", "a", {lacking, 0x915, 1, 1, 2}},
      // where lengths of characters are not what ICU says
      {"gsm-03.38-2009", "US-ASCII", "a\x1b\x65", "a", {lacking, 0x20ac, 1, 1, 2}},
      {"BOCU-1", "US-ASCII", "\xb1\xd3\xea", "a", {lacking, 0x436, 1, 1, 2}},
      {"SCSU", "US-ASCII", "a\x0eN-", "a", {lacking, 0x4e2d, 1, 1, 2}},
      // lines and columns
      {"UTF-8", "UTF-8", "\u00e4\n\r\n\r\r\n\U0001F600\xff", "\u00e4\n\r\n\r\r\n\U0001F600",
          {invalid, 0, 12, 5, 2}},
      {"UTF-8", "UTF-8", "a\r\xff", "a\r", {invalid, 0, 2, 2, 1}},
      {"windows-1253", "UTF-8", "\x93\x80\xd2", "\u201c\u20ac", {invalid, 0, 2, 1, 3}},
      {"windows-1251", "KOI8-R", "\xe0\n\xa8\xb8\x85", "\xc1\n\xb3\xa3",
          {lacking, 0x2026, 4, 2, 3}},
      {"ibm-1047", "windows-1251", "\x81\x25\x42", "a\n", {lacking, 0xe2, 2, 2, 1}},
      {"UTF-16LE", "US-ASCII", "\n\0a\0\x3d\xd8\0\xde"sv, "\na", {lacking, 0x1f600, 4, 2, 2}}};
  for (const Case& each : cases) check(each);
}

// Errors around the ends of blocks, and where the beginning of the text is long gone.
TEST(Text, FindsErrorsInLongTexts) {
  const std::string word = "\x1b$B%F%9%H\x1b(B a\n", word_utf8 = "\u30c6\u30b9\u30c8 a\n";
  for (const int count : {255, 256, 257, 512, 1025}) {
    const std::string text = repeat(word, count), utf8 = repeat(word_utf8, count);
    const auto lines = static_cast<uint64_t>(count);
    check({"ISO-2022-JP", "UTF-8", text + "\x1b$B%F\xff!", utf8 + "\u30c6",
        {invalid, 0, text.size() + 5, lines + 1, 2}});
    check({"UTF-8", "ISO-2022-JP", utf8 + "\u30c6\u00fc", text + "\x1b$B%F\x1b(B",
        {lacking, 0xfc, utf8.size() + 3, lines + 1, 2}});
    check({"UTF-8", "UTF-16LE,version=1", utf8.substr(0, 5) + std::string("\xf0\x9f"),
        "\xff\xfe\xc6\x30", {invalid, 0, 3, 1, 2}});
  }
  // half a pair, windows that nothing is written in, the other half
  const std::string half = "\x0e\xd8\x3d" + repeat("\x10\x11", 6000);
  check({"SCSU", "UTF-8", "a" + half + "b", "a", {invalid, 0, 1, 1, 2}});
  check({"SCSU", "US-ASCII", "a" + half + "\x0e\xde\x01", "a", {lacking, 0x1f601, 1, 1, 2}});
  check({"SCSU", "UTF-8", half + "\x0e\xde\x01" + half, "\U0001f601",
      {invalid, 0, half.size() + 3, 1, 2}});
  // more than twice the room
  check({"ISO-8859-1", "UTF-8", repeat("\xe9", 2000), repeat("\u00e9", 2000)});
  // a character at the end of a block
  const std::string split = std::string(4095, 'a') + "\u00e4" + std::string(5000, 'a');
  check({"UTF-8", "CESU-8", split + "\xff", split, {invalid, 0, split.size(), 1, 9097}});
}

TEST(Text, EndsOnceAndStaysEnded) {
  const Converter converter = open("UTF-8", "ISO-2022-JP");
  const auto call = [&](std::string_view text, bool is_last, size_t room = 100) {
    std::string output(room, '?');
    const char* input = text.data();
    char* begin = output.data();
    const auto status = i18n_text_convert(
        converter.get(), &input, text.data() + text.size(), &begin, begin + room, is_last);
    output.resize(static_cast<size_t>(begin - output.data()));
    return std::tuple(status, text.size() - static_cast<size_t>(text.end() - input), output);
  };
  // without input, without room, without either
  char* no_room = nullptr;
  const char* no_input = nullptr;
  for (const char** const input : {static_cast<const char**>(nullptr), &no_input}) {
    EXPECT_EQ(i18n_text_convert(converter.get(), input, nullptr, &no_room, nullptr, 0), 0);
  }
  EXPECT_EQ(call("\u65e5", false, 0), std::tuple(I18N_TEXT_FULL, 3u, ""));
  EXPECT_EQ(call("", false, 4), std::tuple(I18N_TEXT_FULL, 0u, "\x1b$BF"));
  EXPECT_EQ(call("", true, 2), std::tuple(I18N_TEXT_FULL, 0u, "|\x1b"));
  EXPECT_EQ(call("", true), std::tuple(I18N_TEXT_OK, 0u, "(B"));
  EXPECT_EQ(call("", true), std::tuple(I18N_TEXT_OK, 0u, ""));
  EXPECT_EQ(call("a", false), std::tuple(I18N_TEXT_ENDED, 0u, ""));
  EXPECT_EQ(get_error(converter.get()), Error());

  // an error waits for the output before it
  i18n_text_reset(converter.get());
  EXPECT_EQ(std::get<0>(call("\u65e5\xff", false, 6)), I18N_TEXT_FULL);
  EXPECT_EQ(get_error(converter.get()), Error());
  EXPECT_EQ(call("", false), std::tuple(I18N_TEXT_INVALID, 0u, "(B"));
  EXPECT_EQ(call("a", true), std::tuple(I18N_TEXT_INVALID, 0u, ""));
  EXPECT_EQ(get_error(converter.get()), Error(invalid, 0, 3, 1, 2));
  i18n_text_get_error(converter.get(), nullptr);

  // a new text, whatever was left of the old one
  i18n_text_reset(converter.get());
  EXPECT_EQ(call("\u65e5\xe6", false, 2), std::tuple(I18N_TEXT_FULL, 4u, "\x1b$"));
  i18n_text_reset(converter.get());
  EXPECT_EQ(call("a", true), std::tuple(I18N_TEXT_OK, 1u, "a"));
  i18n_text_reset(converter.get());
  call(repeat("\u65e5", 3000), false, 9000);
  i18n_text_reset(converter.get());
  EXPECT_EQ(call("a\xff", true), std::tuple(I18N_TEXT_INVALID, 2u, "a"));
  EXPECT_EQ(get_error(converter.get()), Error(invalid, 0, 1, 1, 2));
}

TEST(Text, StopsWhenTheOutputIsRefused) {
  const Converter converter = open("UTF-8", "UTF-16LE");
  std::pair<std::string, size_t> taker;  // what is taken, and when that is too much
  const auto convert_to = [&](const std::string& piece, bool is_last, size_t limit) {
    taker.second = limit;
    const auto take = [](void* context, const char* bytes, size_t length) {
      auto& [taken, most] = *static_cast<decltype(taker)*>(context);
      EXPECT_GT(length, 0u);
      return taken.append(bytes, length).size() > most ? 1 : 0;
    };
    return i18n_text_convert_to(converter.get(), piece.data(), piece.size(), is_last, take, &taker);
  };
  const std::string text(10000, 'a');
  EXPECT_EQ(convert_to(text, false, 20000), I18N_TEXT_OK);
  EXPECT_EQ(convert_to("b", true, 20002), I18N_TEXT_OK);
  EXPECT_EQ(taker.first, repeat(std::string("a\0", 2), 10000) + std::string("b\0", 2));
  EXPECT_EQ(convert_to("b", true, 20004), I18N_TEXT_ENDED);

  i18n_text_reset(converter.get());
  EXPECT_EQ(convert_to(text, false, 20003), I18N_TEXT_STOPPED);
  EXPECT_EQ(convert_to("b", true, 99999), I18N_TEXT_STOPPED);
  EXPECT_EQ(get_error(converter.get()), Error(I18N_TEXT_STOPPED, 0, 0, 0, 0));
}

TEST(Text, RefusesCharsets) {
  for (const char* name : {"klingon", "", "x11-compound-text"}) {
    i18n_text_status_t status = I18N_TEXT_OK;
    EXPECT_EQ(i18n_text_open(name, "UTF-8", &status), nullptr) << name;
    EXPECT_EQ(status, I18N_TEXT_UNKNOWN_SOURCE);
    EXPECT_EQ(i18n_text_open("UTF-8", name, &status), nullptr) << name;
    EXPECT_EQ(status, I18N_TEXT_UNKNOWN_TARGET);
    EXPECT_EQ(i18n_text_open(name, name, nullptr), nullptr);
    i18n_text_error_t error = not_filled;
    EXPECT_EQ(i18n_text_convert_all("UTF-8", name, "a", 1, nullptr, &error), nullptr);
    EXPECT_EQ(to_tuple(error), Error(I18N_TEXT_UNKNOWN_TARGET, 0, 0, 0, 0));
  }
  i18n_text_close(nullptr);
  i18n_text_free(nullptr);
}

}  // namespace
