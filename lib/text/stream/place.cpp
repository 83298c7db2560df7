#include "text/stream/place.h"

#include <algorithm>

#include <unicode/utf16.h>

namespace text {

namespace {

// Without branches, so that compilers make vector code of the loop. An LF after a CR ends no line.
unsigned count_line_ends(std::u16string_view units, char16_t before) {
  unsigned count = (units[0] == u'\r') | ((units[0] == u'\n') & (before != u'\r'));
  for (size_t i = 1; i < units.size(); ++i) {
    count += (units[i] == u'\r') | ((units[i] == u'\n') & (units[i - 1] != u'\r'));
  }
  return count;
}

}  // namespace

void Place::advance(std::u16string_view units) {
  if (units.empty()) return;
  line += count_line_ends(units, is_after_cr ? u'\r' : u'\0');
  is_after_cr = units.back() == u'\r';
  if (const size_t last = units.find_last_of(u"\r\n"); last != units.npos) {
    column = 1;
    units.remove_prefix(last + 1);
  }
  column += units.size() - static_cast<size_t>(std::ranges::count_if(
                               units, [](char16_t unit) { return U16_IS_TRAIL(unit); }));
}

}  // namespace text
