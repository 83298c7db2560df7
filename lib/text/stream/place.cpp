#include "text/stream/place.h"

#include <algorithm>

#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace text {

namespace {

template <class Unit>
bool is_break(Unit unit) {
  return (unit == '\r') | (unit == '\n');
}

// An LF after a CR ends no line.
struct Breaks {
  unsigned all = 0;
  unsigned second = 0;
};
// Without branches, so that compilers make vector code of it.
template <class Unit>
Breaks count_breaks(std::basic_string_view<Unit> text, bool is_after_cr) {
  Breaks breaks = {is_break(text[0]) ? 1U : 0U, is_after_cr && text[0] == '\n' ? 1U : 0U};
  for (size_t i = 1; i < text.size(); ++i) {
    breaks.all += is_break(text[i]);
    breaks.second += unsigned{text[i] == '\n'} & unsigned{text[i - 1] == '\r'};
  }
  return breaks;
}

// Some units go on with a character that another began.
template <class Unit, class GoesOn>
void advance_past(std::basic_string_view<Unit> text, Place& place, GoesOn goes_on) {
  if (text.empty()) return;
  const Breaks breaks = count_breaks(text, place.is_after_cr);
  place.is_after_cr = text.back() == '\r';
  place.line += breaks.all - breaks.second;
  if (breaks.all > 0) {
    place.column = 1;
    size_t begin = text.size();
    while (!is_break(text[begin - 1])) --begin;
    text.remove_prefix(begin);
  }
  place.column += text.size() - static_cast<size_t>(std::ranges::count_if(text, goes_on));
}

}  // namespace

void Place::advance(std::u16string_view units) {
  advance_past(units, *this, [](char16_t unit) { return U16_IS_TRAIL(unit); });
}
void Place::advance(std::string_view utf8) {
  advance_past(utf8, *this, [](char byte) { return U8_IS_TRAIL(byte); });
}
void Place::advance_by_bytes(std::string_view text) {
  advance_past(text, *this, [](char) { return false; });
}

}  // namespace text
