#include "text/stream/error.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

#include <unicode/utf16.h>

namespace text {

namespace {

// The part of a text that the history has.
struct Past {
  const History& history;
  const Source& source;
  std::string bytes;

  std::u16string begin_units() const {
    const char16_t lead = history.begin().lead;
    return lead != 0 ? std::u16string(1, lead) : std::u16string();
  }
};

// Appends what bytes become. False when there is an error in them.
bool read_all(Source& source, std::string_view bytes, std::u16string& units) {
  char16_t room[256];
  const char* begin = bytes.data();
  for (;;) {
    char16_t* end = room;
    const Source::Result result =
        source.read(begin, bytes.data() + bytes.size(), end, std::end(room));
    units.append(room, end);
    if (result != Source::Result::more) return result == Source::Result::all;
  }
}

bool finish(Source& source, std::u16string& units) {
  char16_t room[256];
  char16_t* end = room;
  const Source::Result result = source.finish(end, std::end(room));
  units.append(room, end);
  return result == Source::Result::all;
}

// Where the unit with an index begins, in the bytes of the past: the end of the longest beginning
// of these that converts. `units` receives the units before and the one itself, as far as it is
// one.
size_t find_unit(const Past& past, size_t index, std::u16string& units) {
  const std::string_view bytes = past.bytes;
  Source source = past.history.copy_source(past.source);
  units = past.begin_units();
  size_t read = 0;
  bool is_good = true;
  const auto read_until = [&](size_t size) {
    while (is_good && units.size() < size && read < bytes.size()) {
      is_good = read_all(source, bytes.substr(read++, 1), units);
    }
  };
  // Forward by single bytes, to the one that brings the unit or the error. The second half of a
  // pair may come much later, and ISCII keeps a unit until it sees the next one.
  read_until(index + 1);
  const size_t end = read;
  if (units.size() > index && U16_IS_LEAD(units[index])) read_until(index + 2);
  if (is_good && units.size() <= index) finish(source, units);
  // Back to where the text could end, which is not inside of a pair. In IMAP-mailbox-name it is not
  // inside of an encoded run, in ISCII not behind invisible letters; all else that is read as a
  // whole is much shorter.
  constexpr size_t longest = 256;
  for (size_t size = end + 1; size-- > 0 && end - size < longest;) {
    Source once_more = past.history.copy_source(past.source);
    std::u16string before = past.begin_units();
    if (!read_all(once_more, bytes.substr(0, size), before) || !finish(once_more, before) ||
        before.size() > index) {
      continue;
    }
    // The first half of a pair that the past begins inside of has no bytes in it.
    const bool is_inside_pair = size > 0 && !before.empty() && U16_IS_LEAD(before.back());
    if (!is_inside_pair) return size;
  }
  return end;
}

// What a text becomes. The index of a character that is lacking, if there is one.
std::optional<size_t> write_all(Target target, std::u16string_view text, std::string& output) {
  char room[1024];
  const char16_t* units = text.data();
  const char16_t* const units_end = units + text.size();
  const auto repeat = [&](auto write) {
    Target::Result result;
    do {
      char* end = room;
      result = write(end);
      output.append(room, end);
    } while (result == Target::Result::more);
    return result == Target::Result::all;
  };
  if (repeat([&](char*& end) { return target.write(units, units_end, end, std::end(room)); }) &&
      repeat([&](char*& end) { return target.finish(end, std::end(room)); })) {
    return std::nullopt;
  }
  const auto taken = static_cast<size_t>(units - text.data());
  return taken - std::min(taken, target.count_unwritten());
}

}  // namespace

std::uint64_t find_lead(const Mark& now, const History& history, const Source& source) {
  const Mark& begin = history.begin();
  std::u16string units;
  return begin.bytes + find_unit({history, source, history.bytes()},
                                 static_cast<size_t>(now.units - begin.units), units);
}

Verdict judge(Failure failure, const History& history, const Source& source, const Target& target,
              std::uint64_t written) {
  const Past past = {history, source, history.bytes()};
  const Mark& begin = history.begin();
  for (;;) {
    const auto index = static_cast<size_t>(failure.unit - std::min(failure.unit, begin.units));
    std::u16string units;
    std::uint64_t position = begin.bytes + find_unit(past, index, units);
    if (index == 0 && begin.lead != 0) position = history.lead_begin();
    const std::u16string_view before = std::u16string_view(units).substr(0, index);
    std::string output;
    // A target may have held back a character that then is lacking.
    if (const auto lacking = write_all(history.copy_target(target), before, output)) {
      failure = {I18N_TEXT_LACKING, begin.units + *lacking};
      continue;
    }
    output.erase(0, static_cast<size_t>(written - begin.written));
    Place place = begin.place;
    place.advance(before);
    UChar32 character = 0;
    if (failure.status == I18N_TEXT_LACKING) {
      U16_GET(units.data(), 0, index, units.size(), character);
    }
    return {
        {failure.status, static_cast<std::uint32_t>(character), position, place.line, place.column},
        std::move(output)};
  }
}

}  // namespace text
