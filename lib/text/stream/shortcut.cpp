#include "text/stream/shortcut.h"

#include <algorithm>
#include <cstring>

#include "text/unicode/latin1.h"
#include "text/unicode/utf8.h"

namespace text {

namespace {

// Small enough for the nearest cache.
constexpr size_t longest_step = 8192;

bool is_utf8(const Charset* charset) { return charset->type() == UCNV_UTF8; }
bool is_latin1(const Charset* charset) { return charset->type() == UCNV_LATIN_1; }

bool has_line_ends_of_ascii(const Table& table) {
  const unsigned char ends[] = {'\r', '\n'};
  unsigned char utf8[8];
  const Progress read = table.to_utf8(ends, utf8, sizeof utf8);
  return read.written == 2 && std::equal(ends, ends + 2, utf8);
}

std::string_view as_chars(Bytes text) {
  return {reinterpret_cast<const char*>(text.data()), text.size()};
}

}  // namespace

Shortcut::Shortcut(const char* from, const char* to)
    : from_(find_charset(from)), to_(find_charset(to)) {}

Shortcut::Step Shortcut::convert(Bytes text, std::span<unsigned char> room, Place& place) {
  if (from_ == nullptr || to_ == nullptr) return {};
  text = text.first(std::min(text.size(), longest_step));
  if (is_utf8(from_)) {
    const Step step = read_utf8(text, room);
    place.advance(as_chars(text.first(step.read)));
    return step;
  }
  if (is_utf8(to_)) {
    const Step step = write_utf8(text, room);
    place.advance(as_chars(room.first(step.written)));
    return step;
  }
  return byte_map_ ? convert_bytes(text, room, place) : convert_twice(text, room, place);
}

Shortcut::Step Shortcut::read_utf8(Bytes text, std::span<unsigned char> room) const {
  if (is_utf8(to_)) {
    text = text.first(std::min(text.size(), room.size()));
    text = text.first(find_invalid(text));
    std::memcpy(room.data(), text.data(), text.size());
    return {text.size(), text.size()};
  }
  if (is_latin1(to_)) {
    text = text.first(std::min(text.size(), room.size() - copy_slack));
    text = text.first(find_invalid(text));
    const unsigned char* const end = utf8_to_latin1(room.data(), text);
    if (end == nullptr) return {};
    return {text.size(), static_cast<size_t>(end - room.data())};
  }
  const Table* const table = to_->get_table(text.size());
  if (table == nullptr) return {};
  const Progress progress = table->from_utf8(text.first(find_invalid(text)), room.data(),
                                             room.size(), Invisible::kRefused);
  return {progress.read, progress.written};
}

Shortcut::Step Shortcut::write_utf8(Bytes text, std::span<unsigned char> room) const {
  if (is_latin1(from_)) {
    text = text.first(std::min(text.size(), (room.size() - copy_slack) / 2));
    const unsigned char* const end = latin1_to_utf8(room.data(), text);
    return {text.size(), static_cast<size_t>(end - room.data())};
  }
  const Table* const table = from_->get_table(text.size());
  if (table == nullptr) return {};
  const Progress progress = table->to_utf8(text, room.data(), room.size());
  return {progress.read, progress.written};
}

// By way of UTF-8. Where the second half ends early it is not known how far the first half got, so
// that it is all or nothing.
Shortcut::Step Shortcut::convert_twice(Bytes text, std::span<unsigned char> room, Place& place) {
  const Table* const reader = from_->get_table(text.size());
  const Table* const writer = to_->get_table(text.size());
  if (reader == nullptr || writer == nullptr) return {};
  if (reader->is_single_byte() && writer->is_single_byte() && has_line_ends_of_ascii(*reader)) {
    byte_map_ = make_byte_map(*reader, *writer);
    return convert_bytes(text, room, place);
  }
  unsigned char utf8[1024];
  const Progress read = reader->to_utf8(text, utf8, sizeof utf8);
  const Bytes between(utf8, read.written);
  const Progress written =
      writer->from_utf8(between, room.data(), room.size(), Invisible::kRefused);
  if (written.stop != Stop::kDone) return {};
  place.advance(as_chars(between));
  return {read.read, written.written};
}

Shortcut::ByteMap Shortcut::make_byte_map(const Table& reader, const Table& writer) {
  ByteMap map;
  for (size_t byte = 0; byte < map.size(); ++byte) {
    const auto text = static_cast<unsigned char>(byte);
    unsigned char utf8[8], result[8];
    const Progress read = reader.to_utf8({&text, 1}, utf8, sizeof utf8);
    const Progress written =
        writer.from_utf8({utf8, read.written}, result, sizeof result, Invisible::kRefused);
    map[byte] = written.written == 1 ? result[0] : no_byte;
  }
  return map;
}

Shortcut::Step Shortcut::convert_bytes(Bytes text, std::span<unsigned char> room,
                                       Place& place) const {
  const size_t most = std::min(text.size(), room.size());
  size_t size = 0;
  for (; size < most; ++size) {
    const std::uint16_t byte = (*byte_map_)[text[size]];
    if (byte == no_byte) break;
    room[size] = static_cast<unsigned char>(byte);
  }
  place.advance_by_bytes(as_chars(text.first(size)));
  return {size, size};
}

}  // namespace text
