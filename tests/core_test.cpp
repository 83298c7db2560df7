// Status holders and the output buffer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qorvii18n/i18n.hpp>

#include <string>

#include "core/string_buffer.h"

namespace {

TEST(UcnvErrorHandler, TellsAFullTargetFromAFailure) {
  struct Handler : i18n::UcnvErrorHandler {
    explicit Handler(int value) { status = value; }
  };
  struct {
    int status;
    bool ok, total_ok, next;
  } cases[] = {
      {0, true, true, false},    {-124, true, true, false}, {15, true, false, true},
      {10, false, false, false}, {14, false, false, false}, {16, false, false, false},
  };
  for (const auto& c : cases) {
    Handler handler(c.status);
    EXPECT_EQ(handler.ucnv_is_ok(), c.ok) << c.status;
    EXPECT_EQ(handler.ucnv_is_total_ok(), c.total_ok) << c.status;
    EXPECT_EQ(handler.has_next(), c.next) << c.status;
    handler.ucnv_set_ok();
    EXPECT_TRUE(handler.ucnv_is_total_ok());
  }
}

TEST(Error, IsClearedOnlyByAssignment) {
  struct Flag : i18n::Error {
  } flag, ok;
  EXPECT_TRUE(flag.is_ok());
  flag.set_error();
  flag.set_error();
  EXPECT_TRUE(flag.is_error());
  EXPECT_TRUE(Flag(flag).is_error());
  flag = ok;
  EXPECT_FALSE(flag.is_error());
}

TEST(BegEnd, KeepsAnOpenEndOpen) {
  i18n::BegEnd closed(3, 7), open(3, -1);
  closed.add(2);
  open.add(2);
  EXPECT_EQ(closed.begin, 5);
  EXPECT_EQ(closed.end, 9);
  EXPECT_EQ(closed.size(), 4);
  EXPECT_EQ(open.begin, 5);
  EXPECT_EQ(open.end, -1);
  EXPECT_EQ(open.size(), -6);
}

std::string numbered(size_t size) {
  std::string text(size, ' ');
  for (size_t i = 0; i < size; ++i) text[i] = static_cast<char>('0' + i % 43);
  return text;
}

// Every way to append, at sizes around the edges of blocks, gives the same content.
TEST(StringBuffer, KeepsWhatWasAppendedAcrossBlocks) {
  struct {
    size_t size;
    int links_by_run, links_by_byte;
  } cases[] = {{0, 1, 1},   {1, 1, 1},   {255, 1, 1}, {256, 1, 2},
               {257, 2, 2}, {512, 2, 3}, {600, 3, 3}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.size);
    const std::string text = numbered(c.size);
    i18n::StringBuffer<char> by_run(256), by_byte(256), by_string(256), by_block(256);
    by_run.add_bytes(text.data(), static_cast<int>(text.size()));
    for (const char byte : text) by_byte.add_char(byte);
    by_string.add_bytes(text.c_str());
    by_string.add_str(text);
    const char* position = text.data();
    int left = static_cast<int>(text.size());
    while (left > 0) by_block.fill_block(position, left);
    EXPECT_EQ(by_run.get_str(), text);
    EXPECT_EQ(by_byte.get_str(), text);
    EXPECT_EQ(by_string.get_str(), text + text);
    EXPECT_EQ(by_block.get_str(), text);
    EXPECT_EQ(by_run.get_link_count(), c.links_by_run);
    EXPECT_EQ(by_byte.get_link_count(), c.links_by_byte);
    // A byte after a block that is exactly full goes to the next one.
    by_run.add_char('!');
    EXPECT_EQ(by_run.get_str(), text + '!');
  }
}

TEST(StringBuffer, TakesBytesBackAcrossBlocks) {
  i18n::StringBuffer<char> buffer(4);
  EXPECT_EQ(buffer.back_char(), nullptr);
  char* at;
  buffer.last_char(at);
  EXPECT_EQ(at, nullptr);
  const std::string text = numbered(9);
  buffer.add_str(text);
  EXPECT_EQ(buffer.get_link_count(), 3);
  for (size_t left = text.size(); left > 0; --left) {
    buffer.last_char(at);
    EXPECT_EQ(*at, text[left - 1]);
    EXPECT_EQ(buffer.back_char(), at);
    EXPECT_EQ(buffer.get_str(), text.substr(0, left - 1));
  }
  EXPECT_EQ(buffer.back_char(), nullptr);
  EXPECT_EQ(buffer.get_link_count(), 1);
  for (const char byte : text) buffer.add_char(byte);  // the emptied blocks serve again
  EXPECT_EQ(buffer.get_str(), text);
  buffer.add_bytes("ignored", 0);
  buffer.add_bytes("ignored", -1);
  EXPECT_EQ(buffer.get_str(), text);
}

TEST(StringBuffer, OfManyBlocksIsReleasedWithoutRecursion) {
  i18n::StringBuffer<char> buffer(1);
  const std::string text(2'000'000, 'x');
  buffer.add_str(text);
  EXPECT_EQ(buffer.get_size(), text.size());
}

}  // namespace
