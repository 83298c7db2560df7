#include "mail/table_text.h"

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

}  // namespace

bool convert_by_tables(const text::Route& route, std::string_view text, std::string& output) {
  constexpr size_t piece_size = 1024;
  unsigned char piece[piece_size];
  output.clear();
  for (;;) {
    const text::Progress progress = route.convert(text::as_bytes(text), piece, sizeof piece);
    output.append(reinterpret_cast<const char*>(piece), progress.written);
    text.remove_prefix(progress.read);
    if (progress.stop != text::Stop::kFull) return progress.stop == text::Stop::kDone;
  }
}

bool TableText::convert(const CharsetRules& rules, const text::Charset& charset,
                        std::string_view text) {
  text_ = text;
  places_.clear();
  is_iso_2022_jp_ = rules.codes == Codes::kIso2022Jp;
  if (text.size() > std::numeric_limits<std::uint32_t>::max()) return false;
  const auto route = text::Route::find(text::find_charset("UTF-8"), &charset, text.size(),
                                       text::Invisible::kRefused);
  if (!route || has_barred(rules, text) || !convert_by_tables(*route, text, codes_)) return false;
  table_ = charset.get_table(text.size());
  const CharsetRules& of_codes = is_iso_2022_jp_ ? *find_charset_rules("EUC-JP") : rules;
  if (table_ == nullptr || find_barred_code(of_codes, codes_) < codes_.size()) return false;
  if (!is_iso_2022_jp_) return true;
  auto with_escapes = to_iso_2022_jp(codes_);
  if (with_escapes) codes_ = std::move(*with_escapes);
  return with_escapes.has_value();
}

std::string_view TableText::get(size_t begin, size_t end) {
  if (places_.empty()) find_places();
  std::string_view codes =
      std::string_view(codes_).substr(places_[begin], places_[end] - places_[begin]);
  if (!is_iso_2022_jp_ || codes.empty()) return codes;
  // From ASCII to ASCII.
  part_.clear();
  if (codes.starts_with(to_ascii)) codes.remove_prefix(to_ascii.size());
  if (!U8_IS_SINGLE(text_[begin]) && !codes.starts_with(to_jis)) part_ += to_jis;
  part_ += codes;
  if (!U8_IS_SINGLE(text_[end - 1])) part_ += to_ascii;
  return part_;
}

void TableText::find_places() {
  places_.resize(text_.size() + 1);
  size_t place = 0;
  for (size_t next = 0; next < text_.size();) {
    places_[next] = static_cast<std::uint32_t>(place);
    char32_t character;
    U8_NEXT_UNSAFE(text_.data(), next, character);
    if (is_iso_2022_jp_ && codes_[place] == escape) place += to_jis.size();
    place += table_->is_single_byte() ? 1 : table_->get_code(character).size;
  }
  places_[text_.size()] = static_cast<std::uint32_t>(place);
}

}  // namespace mail
