#include <string_view>

#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "i18n_mime_encoding/qp_form.h"

namespace i18n_mime {

namespace {

int get_forms_size(const char* table, std::string_view bytes) {
  const size_t size =
      bytes.size() + count_escapes(table, bytes) * static_cast<size_t>(escape_size - literal_size);
  return static_cast<int>(size);
}

// A word has room for less than max_run, so what is longer is a single long character.
void append_forms(i18n::StringBuffer<char>& buffer, const char* table,
                  const unsigned char*& position, const unsigned char* end) {
  constexpr int max_run = 80;
  char run[max_run + form_slack];
  while (position != end) {
    char* out = run;
    while (position != end && out < run + max_run) {
      out = put_form(out, is_escaped(table, *position), *position);
      ++position;
    }
    buffer.add_bytes(run, static_cast<int>(out - run));
  }
}

}  // namespace

QPHeaderEncoder::QPHeaderEncoder(const char* charset_name)
    : GenericEncoder(charset_name), line_cycle(charset_name, I18N_MIME_QP) {}
QPHeaderEncoder::QPHeaderEncoder(const QPHeaderEncoder& other) = default;
QPHeaderEncoder::QPHeaderEncoder(QPHeaderEncoder&& other) = default;
QPHeaderEncoder& QPHeaderEncoder::operator=(const QPHeaderEncoder& other) = default;
QPHeaderEncoder& QPHeaderEncoder::operator=(QPHeaderEncoder&& other) = default;
QPHeaderEncoder::~QPHeaderEncoder() = default;

// The line cycle places the first character of each word in this chunk; those that fit beside it are
// counted, then written with it as one run.
void QPHeaderEncoder::encode(i18n::CharsetToCharsetIterPrototype& iter,
                             i18n::StringBuffer<char>& buffer) {
  if (iter.get_chunk().empty()) {
    line_cycle.move_line(buffer, 0);  // an empty text has a word, too
    return;
  }
  set_ptrs(iter.get_chunk());
  const int longest = line_cycle.get_num_bytes_avail();
  i18n::CharIter<char> characters = iter.get_char_iter();
  const unsigned char* run_end = position;
  int room = 0;
  while (characters.has_next_chunk()) {
    characters.next_chunk();
    const std::string_view character = characters.get_chunk();
    const int size = get_forms_size(table, character);
    if (size <= room && size <= longest) {
      line_cycle.extend_line(size);
    } else {
      append_forms(buffer, table, position, run_end);
      line_cycle.move_line(buffer, size);
    }
    room = line_cycle.get_room();
    run_end += character.size();
  }
  append_forms(buffer, table, position, run_end);
}

void QPHeaderEncoder::complete(i18n::StringBuffer<char>& buffer) { line_cycle.close_cycle(buffer); }

i18n_mime_encoding_t QPHeaderEncoder::get_encoding_type() const { return I18N_MIME_QP; }

}  // namespace i18n_mime
