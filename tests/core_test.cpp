// The output buffer and the small types.
#include <qorvii18n/i18n.hpp>

#include "core/string_buffer.h"
#include "support/testing.h"

// Every way to append, at sizes around the edges of blocks, gives the same content.
TEST(StringBuffer, KeepsAndTakesBackBytesAcrossBlocks) {
  const std::tuple<std::string, int, int> cases[] = {{"", 1, 1}, {"a", 1, 1}, {"abc", 1, 1},
      {"abcd", 1, 2}, {"abcde", 2, 2}, {"abcdefgh", 2, 3}, {"abcdefghij", 3, 3},
      {"abcdefghijklmnop", 4, 5}, {"abcdefghijklmnopqrstuvwxyz", 7, 7}, {x(200), 50, 51}};
  for (const auto& [text, links_by_run, links_by_byte] : cases) {
    i18n::StringBuffer<char> by_run(4), by_byte(4), by_string(4), by_block(4);
    by_run.add_str(text);
    by_run.add_bytes("ignored", -1);
    for (const char byte : text) by_byte.add_char(byte);
    by_string.add_bytes(text.c_str());
    const char* position = text.c_str();
    int left = static_cast<int>(text.size());
    while (left > 0) by_block.fill_block(position, left);
    EXPECT_EQ(by_run.get_link_count(), links_by_run) << text;
    EXPECT_EQ(by_byte.get_link_count(), links_by_byte) << text;
    for (auto* buffer : {&by_run, &by_byte, &by_string, &by_block}) {
      EXPECT_EQ(buffer->get_str(), text);
      for (size_t rest = text.size(); rest-- > 0;) {
        EXPECT_EQ(*buffer->back_char(), text[rest]);
        EXPECT_EQ(buffer->get_str(), text.substr(0, rest));
      }
      EXPECT_EQ(buffer->back_char(), nullptr);
      EXPECT_EQ(buffer->get_link_count(), 1);
      buffer->add_str(text);  // the emptied blocks serve again
      buffer->add_char('!');  // and one that is exactly full leads on
      EXPECT_EQ(buffer->get_str(), text + "!");
      EXPECT_EQ(buffer->copy_content().get(), text + "!");
    }
  }
}

TEST(StringBuffer, DestroysAChainOfAnyLength) {
  i18n::StringBuffer<char> buffer(1);
  buffer.add_str(std::string(300'000, 'x'));
  EXPECT_EQ(buffer.get_link_count(), 300'000);
}

TEST(BegEnd, MovesAndKeepsAnOpenEnd) {
  const std::tuple<i18n::BegEnd, int, int, int> cases[] = {
      {{}, 2, 2, 0}, {{3, 7}, 5, 9, 4}, {{3, -1}, 5, -1, -6}};
  for (auto [pair, begin, end, size] : cases) {
    pair.add(2);
    EXPECT_EQ(std::tuple(pair.begin, pair.end, pair.size()), std::tuple(begin, end, size));
  }
}

TEST(UcnvErrorHandler, TellsAFullTargetFromAFailure) {
  struct Handler : i18n::UcnvErrorHandler {
    explicit Handler(std::int32_t code) { status = code; }
  };
  const std::tuple<Handler, bool, bool, bool> cases[] = {{Handler(-124), true, true, false},
      {Handler(0), true, true, false}, {Handler(15), true, false, true},
      {Handler(10), false, false, false}};
  for (const auto& [handler, is_ok, is_total_ok, has_next] : cases) {
    EXPECT_EQ(std::tuple(handler.ucnv_is_ok(), handler.ucnv_is_total_ok(), handler.has_next()),
        std::tuple(is_ok, is_total_ok, has_next));
  }
}
