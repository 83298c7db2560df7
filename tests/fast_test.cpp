// What the fast road rests on: where header text is cut, and the string that it writes.
#include <algorithm>
#include <cstring>

#include "fast/header_chunks.h"
#include "fast/output.h"
#include "support/testing.h"

namespace {

using i18n::Bytes;

// "44 1+40": a chunk of 44 bytes, and one of which one byte hangs together and 40 follow.
std::string cut(const std::string& text, size_t room) {
  const fast::HeaderText header(text::as_bytes(text));
  fast::HeaderChunks chunks(header, room);
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
  const fast::HeaderText header(text::as_bytes(broken));
  EXPECT_FALSE(fast::HeaderChunks(header, 45).next());
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
