#include <algorithm>

#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "i18n_mime_encoding/qp_form.h"

namespace i18n_mime {

namespace {

// Characters written at once: those of a word, as a rule.
constexpr int max_run = 80;

// Appends the run and begins the next one.
void append_run(i18n::StringBuffer<char>& buffer, char* run, char*& run_end) {
  buffer.add_bytes(run, static_cast<int>(run_end - run));
  run_end = run;
}

}  // namespace

QPHeaderEncoder::QPHeaderEncoder(const char* charset_name)
    : GenericEncoder(charset_name), line_cycle(charset_name, I18N_MIME_QP) {}
QPHeaderEncoder::QPHeaderEncoder(const QPHeaderEncoder& other) = default;
QPHeaderEncoder::QPHeaderEncoder(QPHeaderEncoder&& other) = default;
QPHeaderEncoder& QPHeaderEncoder::operator=(const QPHeaderEncoder& other) = default;
QPHeaderEncoder& QPHeaderEncoder::operator=(QPHeaderEncoder&& other) = default;
QPHeaderEncoder::~QPHeaderEncoder() = default;

// Characters go to the buffer in runs. The line cycle places the first one of each word; those that
// fit on its line are counted as they come.
void QPHeaderEncoder::encode(i18n::CharsetToCharsetIterPrototype& iter,
                             i18n::StringBuffer<char>& buffer) {
  if (iter.get_chunk().empty()) {
    line_cycle.move_line(buffer, 0);  // an empty text has a word, too
    return;
  }
  i18n::CharIter<char> characters = iter.get_char_iter();
  char run[max_run + forms_slack];
  char* run_end = run;
  int room = 0;
  while (characters.has_next_chunk()) {
    characters.next_chunk();
    const std::string& character = characters.get_chunk();
    const int size = get_byte_size_qp_encoded_str(character);
    if (size <= room) {
      line_cycle.extend_line(size);
    } else {
      append_run(buffer, run, run_end);
      line_cycle.move_line(buffer, size);
    }
    room = std::min(line_cycle.get_room(), line_cycle.get_num_bytes_avail());
    set_ptrs(character);
    while (position != end) {
      run_end = put_forms(run_end, run + max_run, table, position, end);
      if (position != end) append_run(buffer, run, run_end);
    }
  }
  append_run(buffer, run, run_end);
}

void QPHeaderEncoder::complete(i18n::StringBuffer<char>& buffer) { line_cycle.close_cycle(buffer); }

i18n_mime_encoding_t QPHeaderEncoder::get_encoding_type() const { return I18N_MIME_QP; }

}  // namespace i18n_mime
