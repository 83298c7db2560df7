#include "mail/table_text.h"

#include <algorithm>
#include <limits>
#include <optional>

#include <unicode/utf8.h>

#include "mail/icu.h"

namespace mail {

namespace {

constexpr std::string_view to_jis = "\x1B$B", to_ascii = "\x1B(B";
constexpr char escape = '\x1B';

// Puts escape sequences between the ASCII characters and those of two bytes, which ISO-2022-JP has
// from EUC-JP in seven bits. Ends in ASCII. Null when there is something else in the text.
std::optional<std::string> to_iso_2022_jp(std::string_view euc_jp) {
  constexpr std::string_view shifts = "\x0E\x0F\x1B";
  std::string result;
  result.reserve(euc_jp.size() + euc_jp.size() / 4 + to_jis.size() + to_ascii.size());
  bool is_jis = false;
  for (size_t i = 0; i < euc_jp.size(); ++i) {
    const auto byte = static_cast<unsigned char>(euc_jp[i]);
    const bool is_pair = byte >= 0xA1;
    if (!is_pair && (byte >= 0x80 || shifts.find(euc_jp[i]) != shifts.npos)) return std::nullopt;
    if (is_jis != is_pair) result += is_pair ? to_jis : to_ascii;
    is_jis = is_pair;
    result += static_cast<char>(byte & 0x7F);
    if (is_pair) result += static_cast<char>(euc_jp[++i] & 0x7F);
  }
  if (is_jis) result += to_ascii;
  return result;
}

template <class Convert>
bool convert_by_table(Convert convert, std::string_view text, std::string& output) {
  constexpr size_t piece_size = 1024;
  unsigned char piece[piece_size];
  output.clear();
  for (;;) {
    const text::Progress progress = convert(text::as_bytes(text), piece, sizeof piece);
    output.append(reinterpret_cast<const char*>(piece), progress.written);
    text.remove_prefix(progress.read);
    if (progress.stop != text::Stop::kFull) return progress.stop == text::Stop::kDone;
  }
}

}  // namespace

bool to_utf8(const text::Table& table, std::string_view text, std::string& output) {
  const auto convert = [&table](auto... arguments) { return table.to_utf8(arguments...); };
  return convert_by_table(convert, text, output);
}

bool from_utf8(const text::Table& table, std::string_view utf8, std::string& output) {
  const auto convert = [&table](auto... arguments) {
    return table.from_utf8(arguments..., text::Invisible::kRefused);
  };
  return convert_by_table(convert, utf8, output);
}

bool TableText::convert(const CharsetRules& rules, const text::Charset& charset,
                        std::string_view text) {
  text_ = text;
  codes_kind_ = rules.codes;
  places_.clear();
  if (text.size() > std::numeric_limits<std::uint32_t>::max()) return false;
  const text::Table* const table = charset.get_table(text.size());
  if (table == nullptr || has_barred(rules, text) || !from_utf8(*table, text, codes_)) return false;
  const CharsetRules& of_codes = has_states() ? *find_charset_rules("EUC-JP") : rules;
  if (find_barred_code(of_codes, codes_) < codes_.size()) return false;
  if (!has_states()) return true;
  auto with_escapes = to_iso_2022_jp(codes_);
  if (with_escapes) codes_ = std::move(*with_escapes);
  return with_escapes.has_value();
}

std::string_view TableText::get(size_t begin, size_t end) {
  if (places_.empty()) find_places();
  std::string_view codes =
      std::string_view(codes_).substr(places_[begin], places_[end] - places_[begin]);
  if (!has_states() || codes.empty()) return codes;
  // From ASCII to ASCII.
  part_.clear();
  if (codes.starts_with(to_ascii)) codes.remove_prefix(to_ascii.size());
  if (!U8_IS_SINGLE(text_[begin]) && !codes.starts_with(to_jis)) part_ += to_jis;
  part_ += codes;
  if (!U8_IS_SINGLE(text_[end - 1])) part_ += to_ascii;
  return part_;
}

size_t TableText::find_index(size_t begin, size_t bytes) {
  if (places_.empty()) find_places();
  const auto first = places_.begin() + static_cast<std::ptrdiff_t>(begin);
  const size_t most = std::min(places_.size() - begin, bytes * text::Table::most_utf8_per_byte + 4);
  const auto place =
      std::upper_bound(first, first + static_cast<std::ptrdiff_t>(most), *first + bytes);
  size_t index = static_cast<size_t>(place - places_.begin()) - 1;
  while (index < text_.size() && is_inside_character(text_[index])) --index;
  return index;
}

void TableText::find_places() {
  places_.resize(text_.size() + 1);
  std::uint32_t* next = places_.data();
  size_t place = 0, end = 0;  // of a character's code
  for (const char byte : text_) {
    if (!is_inside_character(byte)) {
      place = end;
      end += codes_kind_ == Codes::kBytes ? 1 : measure(place, byte);
    }
    *next++ = static_cast<std::uint32_t>(place);
  }
  *next = static_cast<std::uint32_t>(end);
}

// With what is in front of it.
size_t TableText::measure(size_t place, char first_byte) const {
  if (!has_states()) return measure_code(codes_kind_, std::string_view(codes_).substr(place));
  return (codes_[place] == escape ? to_jis.size() : 0) + (U8_IS_SINGLE(first_byte) ? 1 : 2);
}

}  // namespace mail
