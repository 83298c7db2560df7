#include "fast/fast_road.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <utility>

#include <qorvii18n/i18n_mime.hpp>

#include "fast/body.h"
#include "fast/header_words.h"
#include "fast/icu_pieces.h"
#include "fast/iso_2022_jp.h"
#include "fast/pieces.h"
#include "fast/table_pieces.h"
#include "text/icu/converter_types.h"
#include "text/unicode/latin1.h"
#include "text/unicode/utf16.h"

namespace fast {

namespace {

// The table that all encoders of a kind share, and that a program can add to.
template <class Table>
struct SharedTable : Table {
  const char* get() const { return this->table; }
};

// Lines are cut by looking for '=', and words by looking for what continues a character.
bool is_cuttable(const char* table) {
  constexpr auto all_escaped = [] {
    std::array<char, 0x80> entries{};
    entries.fill(1);
    return entries;
  }();
  return table[static_cast<size_t>('=')] == 1 &&
         std::memcmp(table + 0x80, all_escaped.data(), all_escaped.size()) == 0;
}

// How many bytes of a text must be escaped; of a long one, about how many, and rather more, by what
// 64 samples of it have: memory is read no more often than it must be.
size_t estimate_escapes(const char* table, Bytes text) {
  constexpr size_t samples = 64;
  constexpr size_t longest_sample = 1024;
  constexpr size_t sampled_part = 16;
  constexpr size_t shortest_sample = 64;
  const size_t step = text.size() / samples;
  const size_t sample_size = std::min(step / sampled_part, longest_sample);
  if (sample_size < shortest_sample) {
    return transfer::count_escapes(table, text.data(), text.size());
  }
  size_t escapes = 0;
  for (size_t i = 0; i < samples; ++i) {
    escapes += transfer::count_escapes(table, text.data() + i * step, sample_size);
  }
  return escapes * step / sample_size + text.size() / samples;
}

// The characters of a converted text's forms, about. What conversion adds to a text, or takes from
// it, are bytes that are not ASCII: escapes. Their estimate can miss more than it takes away.
size_t estimate_forms(size_t escapes, size_t size_before, size_t size_after) {
  const size_t escapes_after = std::max(escapes + size_after, size_before) - size_before;
  return size_after + (transfer::escape_size - 1) * escapes_after;
}

template <class Body>
bool put_body(Pieces& pieces, Body& body) {
  for (Bytes piece = pieces.next(); !piece.empty(); piece = pieces.next()) body.append(piece);
  if (pieces.has_failed()) return false;
  body.finish();
  return true;
}

i18n::CString encode_base64(Pieces& pieces) {
  Output output(Base64Body::get_size(pieces.get_expected_size()));
  Base64Body body(output);
  return put_body(pieces, body) ? output.release() : nullptr;
}

i18n::CString encode_quoted_printable(Pieces& pieces, Bytes text, std::optional<size_t> counted) {
  const SharedTable<i18n_mime::QPBodyEncodingTable> table;
  if (!is_cuttable(table.get())) return nullptr;
  const size_t escapes = counted ? *counted : estimate_escapes(table.get(), text);
  const size_t forms = estimate_forms(escapes, text.size(), pieces.get_expected_size());
  Output output(QuotedPrintableBody::get_size(forms));
  QuotedPrintableBody body(table.get(), output);
  return put_body(pieces, body) ? output.release() : nullptr;
}

i18n::CString encode_pieces(const Work& work, Pieces& pieces, Bytes text) {
  return work.encoding == I18N_MIME_QP ? encode_quoted_printable(pieces, text, work.escapes)
                                       : encode_base64(pieces);
}

// What becomes of most texts. The room for short ones is there in any case.
size_t estimate_size(const text::Charset& from, const text::Charset& to, Bytes text) {
  constexpr size_t short_text = 512;
  if (text.size() <= short_text) return text.size();
  if (from.type() == UCNV_UTF8) {
    return text::is_single_byte(to.type()) ? text::count_units(text) : text.size();
  }
  if (to.type() != UCNV_UTF8) return text.size();
  const size_t size = text::get_utf8_size(text);
  return text::is_single_byte(from.type()) ? size : text.size() + (size - text.size()) / 2;
}

bool is_unchanged(const text::Charset& from, const text::Charset& to, Bytes text) {
  if (from.type() != to.type()) return false;
  return from.type() == UCNV_LATIN_1 || (from.type() == UCNV_UTF8 && text::is_utf8(text));
}

// Converters that look ahead are left to the exact road.
i18n::CString encode_with_icu(const Work& work, const text::Charset& from, const text::Charset& to,
                              Bytes text) {
  if (!text::is_independent(from.type()) || !text::is_independent(to.type())) return nullptr;
  text::ConverterPtr reader = text::open_converter(from.name());
  text::ConverterPtr writer = text::open_converter(to.name());
  if (!reader || !writer) return nullptr;
  const auto pieces = std::make_unique<IcuPieces>(std::move(reader), std::move(writer), text);
  return encode_pieces(work, *pieces, text);
}

i18n::CString encode_converted(const Work& work, const text::Charset& from, const text::Charset& to,
                               Bytes text) {
  const bool is_iso_2022_jp =
      to.type() == UCNV_ISO_2022 && std::strcmp(to.name(), Iso2022JpPieces::charset) == 0;
  const text::Charset* const target =
      is_iso_2022_jp ? text::find_charset(Iso2022JpPieces::route_target) : &to;
  const auto route = text::Route::find(&from, target, text.size());
  if (!route) return encode_with_icu(work, from, to, text);
  if (is_iso_2022_jp) {
    const auto pieces = std::make_unique<Iso2022JpPieces>(*route, text);
    return encode_pieces(work, *pieces, text);
  }
  TablePieces pieces(*route, text, estimate_size(from, to, text));
  return encode_pieces(work, pieces, text);
}

i18n::CString encode_body(const Work& work, Bytes text) {
  // Equal names mean that nothing is converted, whatever they name.
  if (std::strcmp(work.from_charset, work.to_charset) != 0) {
    const text::Charset* const from = text::find_charset(work.from_charset);
    const text::Charset* const to = text::find_charset(work.to_charset);
    if (from == nullptr || to == nullptr) return nullptr;
    if (!is_unchanged(*from, *to, text)) return encode_converted(work, *from, *to, text);
  }
  WholeText pieces(text);
  return encode_pieces(work, pieces, text);
}

// ICU takes these spellings for UTF-8 without looking them up.
bool is_utf8_name(const char* charset) {
  constexpr std::string_view names[] = {"UTF-8", "utf-8", "UTF8", "utf8"};
  return std::find(std::begin(names), std::end(names), charset) != std::end(names);
}

bool convert_header(const Work& work, HeaderText& text) {
  if (is_utf8_name(work.from_charset) && is_utf8_name(work.to_charset)) return true;
  const text::Charset* const from = text::find_charset(work.from_charset);
  const text::Charset* const to = text::find_charset(work.to_charset);
  return from != nullptr && to != nullptr && std::strlen(work.to_charset) <= longest_word_charset &&
         text.convert(*from, *to);
}

i18n::CString encode_header(const Work& work, Bytes bytes) {
  HeaderText text(bytes);
  if (!convert_header(work, text)) return nullptr;
  Output output(2 * text.get().size());
  if (work.encoding == I18N_MIME_B64) {
    return put_b_words(text, work.to_charset, output) ? output.release() : nullptr;
  }
  const SharedTable<i18n_mime::QPHeaderEncodingTable> table;
  const bool is_done =
      is_cuttable(table.get()) && put_q_words(text, work.to_charset, table.get(), output);
  return is_done ? output.release() : nullptr;
}

}  // namespace

i18n::CString encode(const Work& work, std::string_view text) {
  if (work.from_charset == nullptr || work.to_charset == nullptr) return nullptr;
  const Bytes bytes(reinterpret_cast<const unsigned char*>(text.data()), text.size());
  return work.use == Use::kBody ? encode_body(work, bytes) : encode_header(work, bytes);
}

}  // namespace fast
