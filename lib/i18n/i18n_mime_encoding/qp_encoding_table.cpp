// Which bytes quoted-printable must escape.
#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

#include <qorvii18n/i18n_mime.hpp>

#include "transfer/qp_forms.h"

namespace i18n_mime {

namespace {

using Table = std::array<char, 256>;

constexpr unsigned char to_index(char byte) { return static_cast<unsigned char>(byte); }

constexpr void mark(char* table, std::string_view bytes) {
  for (const char byte : bytes) table[to_index(byte)] = 1;
}

constexpr void fill_with_body_rule(char* table) {
  constexpr int first_printable = 0x20;
  constexpr int last_printable = 0x7e;
  for (int byte = 0; byte < 256; ++byte) {
    table[byte] = byte < first_printable || byte > last_printable ? 1 : 0;
  }
  mark(table, "=\r\n#$@[\\]^`{|}~");
}

constexpr Table make_body_table() {
  Table table{};
  fill_with_body_rule(table.data());
  return table;
}

constexpr Table make_header_table() {
  Table table = make_body_table();
  mark(table.data(), " \t_?");
  return table;
}

// Shared by all tables and encoders of their kind. Filled before the program starts, so that no two
// threads can race to do it.
constinit Table body_table = make_body_table();
constinit Table header_table = make_header_table();

size_t count_escapes(const char* table, const std::string& text) {
  return transfer::count_escapes(table, reinterpret_cast<const unsigned char*>(text.data()),
                                 text.size());
}

int saturate(size_t count) {
  return static_cast<int>(std::min<size_t>(count, std::numeric_limits<int>::max()));
}

}  // namespace

QPEncodingTable::QPEncodingTable(char* entries, bool filled) : table(entries) {
  if (!filled) fill_with_body_rule(table);
}
QPEncodingTable::QPEncodingTable(const QPEncodingTable& other) = default;
QPEncodingTable::QPEncodingTable(QPEncodingTable&& other) noexcept = default;
QPEncodingTable& QPEncodingTable::operator=(const QPEncodingTable& other) = default;
QPEncodingTable& QPEncodingTable::operator=(QPEncodingTable&& other) noexcept = default;

void QPEncodingTable::set_encode_char(unsigned char byte) { table[byte] = 1; }

void QPEncodingTable::set_encode_chars(const char* bytes) { mark(table, bytes); }

bool QPEncodingTable::should_encode(char byte) {
  return transfer::is_escaped(table, to_index(byte));
}

int QPEncodingTable::get_number_qp_encoded_bytes(const std::string& text) {
  return saturate(count_escapes(table, text));
}

int QPEncodingTable::get_byte_size_qp_encoded_str(const std::string& text) {
  return saturate(text.size() + 2 * count_escapes(table, text));
}

QPBodyEncodingTable::QPBodyEncodingTable() : QPEncodingTable(body_table.data(), true) {}
QPBodyEncodingTable::QPBodyEncodingTable(const QPBodyEncodingTable& other) = default;
QPBodyEncodingTable::QPBodyEncodingTable(QPBodyEncodingTable&& other) noexcept = default;
QPBodyEncodingTable& QPBodyEncodingTable::operator=(const QPBodyEncodingTable& other) = default;
QPBodyEncodingTable& QPBodyEncodingTable::operator=(QPBodyEncodingTable&& other) noexcept = default;

QPHeaderEncodingTable::QPHeaderEncodingTable() : QPEncodingTable(header_table.data(), true) {}
QPHeaderEncodingTable::QPHeaderEncodingTable(const QPHeaderEncodingTable& other) = default;
QPHeaderEncodingTable::QPHeaderEncodingTable(QPHeaderEncodingTable&& other) noexcept = default;
QPHeaderEncodingTable& QPHeaderEncodingTable::operator=(const QPHeaderEncodingTable& other) =
    default;
QPHeaderEncodingTable& QPHeaderEncodingTable::operator=(QPHeaderEncodingTable&& other) noexcept =
    default;

}  // namespace i18n_mime
