// Measuring and folding of lines.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qorvii18n/i18n_mime.hpp>

#include <string>
#include <vector>

#include "core/string_buffer.h"
#include "support/diagnostics.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* too_large = "num_bytes <= get_num_bytes_avail() @ lib/i18n/i18n_mime_utils";

// Appends count pieces of size bytes; returns the output.
std::string write_pieces(i18n::LineCycle& cycle, int size, int count) {
  i18n::StringBuffer<char> buffer(256);
  const std::string piece(static_cast<size_t>(size), '.');
  for (int i = 0; i < count; ++i) {
    cycle.move_line(buffer, size);
    buffer.add_str(piece);
  }
  return buffer.get_str();
}

std::vector<size_t> line_lengths(const std::string& text) {
  std::vector<size_t> lengths;
  size_t begin = 0;
  for (size_t end; (end = text.find("\r\n", begin)) != std::string::npos; begin = end + 2) {
    lengths.push_back(end - begin);
  }
  lengths.push_back(text.size() - begin);
  return lengths;
}

TEST(LineCycle, FoldsWhereThePieceAndASuffixNoLongerFit) {
  struct {
    const char* suffix;
    int piece, count;
    std::vector<size_t> lengths;
  } cases[] = {
      {"=", 1, 75, {75}},
      {"=", 1, 76, {76, 1}},
      {"=", 1, 75 + 73 + 1, {76, 74, 1}},
      {"=", 3, 25, {75}},
      {"=", 3, 25 + 24 + 1, {76, 73, 3}},
      {"", 4, 19, {76}},
      {"", 4, 19 + 18 + 1, {76, 72, 4}},
  };
  for (const auto& c : cases) {
    i18n::LineCycle cycle(76, nullptr, c.suffix, "\r\n");
    EXPECT_EQ(line_lengths(write_pieces(cycle, c.piece, c.count)), c.lengths)
        << c.piece << " x " << c.count;
  }
  EXPECT_THAT(take_diagnostics(), IsEmpty());
}

TEST(LineCycle, ReportsWhatLeavesNoRoom) {
  i18n::LineCycle no_room(8, "abc", "de", "fgh");
  EXPECT_THAT(take_diagnostics(), ElementsAre("is_legal() @ lib/i18n/i18n_mime_utils"));
  EXPECT_EQ(no_room.get_num_bytes_avail(), 0);
  i18n::LineCycle room_for_one(9, "abc", "de", "fgh");
  EXPECT_EQ(room_for_one.get_num_bytes_avail(), 1);
  EXPECT_EQ(write_pieces(room_for_one, 1, 5), "abc....defghabc.");
  EXPECT_THAT(take_diagnostics(), IsEmpty());
  EXPECT_EQ(write_pieces(room_for_one, 2, 1), "defghabc..") << "placed all the same";
  EXPECT_THAT(take_diagnostics(), ElementsAre(too_large));
}

TEST(HeaderLineCycle, OpensAndClosesEncodedWords) {
  struct {
    const char* charset;
    i18n_mime_encoding_t encoding;
    const char* two_words;
    int room;
    std::vector<std::string> reports;
  } cases[] = {
      {"UTF-8", I18N_MIME_QP, "=?UTF-8?Q?\?=\r\n\t=?UTF-8?Q?\?=", 60, {}},
      {"ISO-2022-JP", I18N_MIME_B64, "=?ISO-2022-JP?B?\?=\r\n\t=?ISO-2022-JP?B?\?=", 54, {}},
      {"UTF-8",
       I18N_MIME_NONE,
       "=?UTF-8?Q?\?=\r\n\t=?UTF-8?Q?\?=",
       60,
       {"e_type != I18N_MIME_NONE @ lib/i18n/i18n_mime_encoding"}},
  };
  for (const auto& c : cases) {
    i18n_mime::HeaderLineCycle cycle(c.charset, c.encoding);
    EXPECT_EQ(take_diagnostics(), c.reports);
    EXPECT_EQ(cycle.get_num_bytes_avail(), c.room);
    i18n::StringBuffer<char> buffer(256);
    for (int word = 0; word < 2; ++word) {
      cycle.start_cycle(buffer);
      cycle.close_cycle(buffer);
    }
    EXPECT_EQ(buffer.get_str(), c.two_words);
  }
}

TEST(LineCycle, CopiesGoOnFromTheSameState) {
  i18n_mime::HeaderLineCycle source("UTF-8", I18N_MIME_QP);
  write_pieces(source, 60, 1);
  auto copy = std::make_unique<i18n_mime::HeaderLineCycle>(source);
  i18n_mime::HeaderLineCycle assigned("KOI8-R", I18N_MIME_B64);
  assigned = *copy;
  assigned = *&assigned;
  const std::string next = "?=\r\n\t=?UTF-8?Q?....";
  EXPECT_EQ(write_pieces(*copy, 4, 1), next);
  i18n_mime::HeaderLineCycle moved(std::move(assigned));
  copy.reset();
  EXPECT_EQ(write_pieces(source, 4, 1), next);
  EXPECT_EQ(write_pieces(moved, 4, 1), next);
}

}  // namespace
