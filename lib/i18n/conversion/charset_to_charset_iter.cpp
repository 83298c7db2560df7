#include "conversion/charset_to_charset_iter.h"

#include "charset/diagnostics.h"
#include "conversion/hex_dump.h"

namespace i18n {

template <class FromIter>
CharsetToCharsetChunkIter<FromIter>::CharsetToCharsetChunkIter(const char* from_charset,
                                                               const char* to_charset,
                                                               int chunk_units, int chunk_bytes)
    : to_unicode(from_charset, chunk_units) {
  if (to_unicode.is_ok()) from_unicode.emplace(to_charset, chunk_bytes);
  if (!from_unicode || from_unicode->is_error()) {
    set_error();
    return;
  }
  // Failures are reported here, where both the bytes and the UTF-16 are known.
  to_unicode.set_report_errors(false);
  from_unicode->set_report_errors(false);
}

template <class FromIter>
CharsetToCharsetChunkIter<FromIter>::~CharsetToCharsetChunkIter() = default;

template <class FromIter>
void CharsetToCharsetChunkIter<FromIter>::borrow_in_str(std::string_view input) {
  to_unicode.borrow_in_str(input);
}

template <class FromIter>
void CharsetToCharsetChunkIter<FromIter>::next_chunk() {
  const bool has_pending_output = from_unicode->has_next() && from_unicode->has_in_str();
  if (!has_pending_output) fetch_unicode();
  from_unicode->next_chunk();
  if (from_unicode->is_error()) {
    report_target_failure();
    set_error();
  }
  chunk = from_unicode->get_chunk().text;
}

// What was converted before a failure still goes through the second stage.
template <class FromIter>
void CharsetToCharsetChunkIter<FromIter>::fetch_unicode() {
  to_unicode.next_chunk();
  if (to_unicode.is_error()) {
    to_unicode.report_failure();
    set_error();
  }
  from_unicode->set_flush(!to_unicode.has_next_chunk());
  from_unicode->borrow_in_str(to_unicode.get_chunk().text);
}

template <class FromIter>
void CharsetToCharsetChunkIter<FromIter>::report_target_failure() {
  const int unit = printable_position(from_unicode->get_error_position());
  int position;
  const std::string bytes = to_unicode.trace_input_mb_char(unit, &position);
  print_message(Message::kCannotConvertToTarget, hex_dump(bytes).c_str(), position,
                hex_dump(from_unicode->get_in_units(unit, 1)).c_str());
}

template <class FromIter>
bool CharsetToCharsetChunkIter<FromIter>::has_next_chunk() {
  return to_unicode.has_next_chunk() || from_unicode->has_next_chunk();
}

template <class FromIter>
void CharsetToCharsetChunkIter<FromIter>::set_limit_byte_size(int n) {
  from_unicode->set_target_limit(n);
}

template <class FromIter>
CharIter<char> CharsetToCharsetChunkIter<FromIter>::get_char_iter() {
  return from_unicode->get_char_iter();
}

template <class FromIter>
std::string CharsetToCharsetChunkIter<FromIter>::trace_input_mb_char(int pos, int* start) {
  int unit;
  from_unicode->trace_input_mb_char(pos, &unit);
  return to_unicode.trace_input_mb_char(unit, start);
}

template class CharsetToCharsetChunkIter<FromUnicodeIter>;
template class CharsetToCharsetChunkIter<FromUnicodeFullCharIter>;

}  // namespace i18n
