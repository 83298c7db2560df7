// What the fast road rests on: UTF-8 looked at directly, and where header text is cut.
#include <unicode/ucnv.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstring>

#include <qorvii18n/i18n.hpp>

#include "fast/header_chunks.h"
#include "fast/output.h"
#include "support/testing.h"
#include "text/unicode/latin1.h"
#include "text/unicode/utf8.h"

namespace {

using i18n::Bytes;

Bytes to_bytes(const std::string& text) {
  return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

// Beside ICU's strict converter.
class Unicode : public testing::Test {
 protected:
  // Returns whether the text is well-formed.
  bool expect_as_icu(const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    UChar units[64];
    const auto count = static_cast<size_t>(ucnv_toUChars(utf8.getAlias(), units, std::size(units),
        text.data(), static_cast<int>(text.size()), &status));
    const bool is_valid = U_SUCCESS(status);
    const Bytes bytes = to_bytes(text);
    const text::Reach reach = text::reach_units(bytes, std::size(units));
    unsigned char room[std::size(units) + text::copy_slack];
    const unsigned char* const begin = room;
    const unsigned char* const latin1_end = text::utf8_to_latin1(room, bytes);
    const bool is_latin1 =
        is_valid && std::all_of(units, units + count, [](UChar unit) { return unit < 0x100; });
    bool same = text::is_utf8(bytes) == is_valid && reach.is_valid == is_valid &&
                (latin1_end != nullptr) == is_latin1 &&
                text::is_ascii(bytes) == (is_valid && count == text.size());
    if (is_valid) same &= reach.units == count && reach.bytes == text.size();
    if (is_latin1) {
      same &= std::equal(begin, latin1_end, units, units + count) &&
              text::get_latin1_size(bytes) == count;
    }
    EXPECT_TRUE(same) << testing::PrintToString(text);
    return is_valid;
  }

 private:
  icu::LocalUConverterPointer utf8{i18n::open_ucnv_converter("UTF-8")};
};

TEST_F(Unicode, EveryCharacterIsAsIcuHasIt) {
  for (UChar32 c = 0; c <= 0x10ffff && !HasFailure(); ++c) {
    if (U_IS_SURROGATE(c)) continue;
    char bytes[U8_MAX_LENGTH];
    size_t size = 0;
    U8_APPEND_UNSAFE(bytes, size, c);
    EXPECT_TRUE(expect_as_icu({bytes, size}));
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

// "44 1+40": a chunk of 44 bytes, and one of which one byte hangs together and 40 follow.
std::string cut(const std::string& text, size_t room) {
  fast::HeaderChunks chunks(to_bytes(text), room);
  std::string sizes;
  do {
    EXPECT_TRUE(chunks.next());
    const size_t run = chunks.get_first_run();
    if (!sizes.empty()) sizes += ' ';
    if (run != 0) sizes += std::to_string(run) + '+';
    sizes += std::to_string(chunks.get_chunk().size() - run);
  } while (chunks.has_next());
  return sizes;
}

TEST(HeaderChunks, EndWhereTheConverterStops) {
  const std::string euro = "\u20ac", smile = "\U0001f600";
  // 86 units at a time, of which the last waits for what comes; more bytes than there is room for;
  // a pair that the 86 units split, and hangs together with what was held back.
  const std::tuple<size_t, std::string, const char*> cases[] = {{45, "", "0"}, {45, x(45), "45"},
      {256, x(86), "86"}, {256, x(87), "85 1+1"}, {45, x(86), "44 1+41"},
      {45, x(87), "44 1+40 1+1"}, {172, repeat("\u00e9", 86) + "z", "170 2+1"},
      {9, repeat("\u00e9", 10), "8 2+6 2+2"}, {45, repeat(euro, 16), "42 3+3"},
      {256, repeat(euro, 85), "255"}, {256, repeat(euro, 86), "255 3+0"},
      {254, repeat(euro, 86) + x(86), "252 3+0 3+86"}, {256, repeat(euro, 87), "255 1+0 2+3"},
      {256, x(85) + smile, "84 5+0"}, {256, x(85) + smile + "z", "84 5+1"},
      {256, x(84) + smile + "z", "84 4+1"}, {45, x(85) + smile + smile, "44 1+39 5+4"},
      {256, "x" + repeat(smile, 65), "165 8+88"},
      {45, "x" + repeat(smile, 44), "41 4+40 4+40 4+32 8+4"},
      {85, x(85) + smile + x(10), "84 1+0 4+10"}, {86, x(85) + smile + x(10), "84 5+10"}};
  for (const auto& [room, text, sizes] : cases) {
    EXPECT_EQ(cut(text, room), sizes) << text;
  }
  const std::string broken = "ab\xff";
  EXPECT_FALSE(fast::HeaderChunks(to_bytes(broken), 45).next());
}

// With pieces of each size, some ends fall on the end of the room that there is.
TEST(Output, HasRoomForItsEndAtAnySize) {
  for (size_t size = 0; size <= 5000; ++size) {
    fast::Output output(size / 2);
    for (const size_t piece : {size - size / 3, size / 3}) {
      char* const out = output.get_room(piece);
      output.take_up_to(std::fill_n(out, piece, 'x'));
    }
    EXPECT_EQ(std::strlen(output.release().get()), size);
  }
}

}  // namespace
