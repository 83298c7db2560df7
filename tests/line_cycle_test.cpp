// Measuring and folding of lines.
#include <qorvii18n/i18n_mime.hpp>

#include <limits>

#include "core/string_buffer.h"
#include "support/testing.h"

namespace {

// Appends count pieces of size bytes; returns the output.
std::string write_pieces(i18n::LineCycle& cycle, int size, int count) {
  i18n::StringBuffer<char> buffer(256);
  for (int i = 0; i < count; ++i) {
    cycle.move_line(buffer, size);
    buffer.add_str(x(size));
  }
  return buffer.get_str();
}

TEST(LineCycle, ReportsWhatItCannotDo) {
  i18n::LineCycle no_room(8, "abc", "de", "fgh");
  EXPECT_EQ(take_diagnostics(), "is_legal() @ lib/i18n/i18n_mime_utils");
  EXPECT_FALSE(no_room.is_legal());
  EXPECT_EQ(no_room.get_num_bytes_avail(), 0);
  i18n::LineCycle room_for_one(9, "abc", "de", "fgh");
  EXPECT_EQ(write_pieces(room_for_one, 1, 5), "abcxxxxdefghabcx");
  EXPECT_EQ(take_diagnostics(), "");
  EXPECT_EQ(write_pieces(room_for_one, 2, 1), "defghabcxx") << "placed all the same";
  EXPECT_EQ(take_diagnostics(), "num_bytes <= get_num_bytes_avail() @ lib/i18n/i18n_mime_utils");
  i18n_mime::HeaderLineCycle no_encoding("UTF-8", I18N_MIME_NONE);
  EXPECT_EQ(write_pieces(no_encoding, 1, 1), "=?UTF-8?Q?x");
  EXPECT_EQ(take_diagnostics(), "e_type != I18N_MIME_NONE @ lib/i18n/i18n_mime_encoding");
}

TEST(LineCycle, AddsUpLengthsOfAnySize) {
  constexpr int least = std::numeric_limits<int>::min(), most = std::numeric_limits<int>::max();
  const std::tuple<int, bool, int, const char*> cases[] = {{least, false, least, "babcabca"},
      {least + 3, false, least, "babcabca"}, {0, false, -3, "babca"},
      {most, true, most - 3, "babca"}};
  for (const auto& [max_length, legal, room, lines] : cases) {
    i18n::LineCycle cycle(max_length, "a", "b", "c");
    EXPECT_EQ(cycle.is_legal(), legal) << max_length;
    EXPECT_EQ(cycle.get_num_bytes_avail(), room);
    i18n::StringBuffer<char> buffer(256);
    for (const int size : {most, most, least, least}) cycle.move_line(buffer, size);
    EXPECT_EQ(buffer.get_str(), lines) << max_length;
  }
  take_diagnostics();
}

TEST(LineCycle, CopiesGoOnFromTheSameState) {
  i18n_mime::HeaderLineCycle source("UTF-8", I18N_MIME_QP), assigned("KOI8-R", I18N_MIME_B64);
  write_pieces(source, 60, 1);
  auto copy = std::make_unique<i18n_mime::HeaderLineCycle>(source);
  assigned = *copy;
  assigned = *&assigned;
  const std::string next = "?=\r\n\t=?UTF-8?Q?xxxx";
  EXPECT_EQ(write_pieces(*copy, 4, 1), next);
  copy.reset();
  i18n_mime::HeaderLineCycle moved(std::move(assigned));
  EXPECT_EQ(write_pieces(source, 4, 1), next);
  EXPECT_EQ(write_pieces(moved, 4, 1), next);
  assigned = std::move(moved);
  moved = i18n_mime::HeaderLineCycle("UTF-8", I18N_MIME_QP);
  EXPECT_EQ(write_pieces(moved, 4, 1), "=?UTF-8?Q?xxxx");
}

}  // namespace
