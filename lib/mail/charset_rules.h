// Which charsets mail is written in, and which of their characters all readers decode alike.
// tools/charsets checks this against the decoders that are installed.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace mail {

// The first and the last.
struct Range {
  uint32_t first;
  uint32_t last;
};

// How long the code is that a byte begins.
enum class Codes {
  kBytes,      // one byte
  kPairs,      // two bytes from 0x80 on
  kGb18030,    // the same, but four where the second is a digit
  kEucJp,      // the same, but three from 0x8F on
  kShiftJis,   // two bytes, but one for half-width katakana
  kIso2022Jp,  // two bytes or one, as escape sequences say
};

struct CharsetRules {
  std::string_view name;  // as it is written; ICU's converter of that name is used
  // Of what ICU has, in ascending order: the characters, and the codes of two bytes as numbers,
  // that some readers take for others.
  std::span<const Range> barred = {};
  std::span<const Range> barred_codes = {};
  Codes codes = Codes::kBytes;
};

// Null when there is none for ICU's MIME or IANA name.
const CharsetRules* find_charset_rules(std::string_view standard_name);

// The size of the code at the beginning of bytes, which are not in ISO-2022-JP.
size_t measure_code(Codes codes, std::string_view bytes);

// Whether a text in UTF-8 has a character that is barred.
bool has_barred(const CharsetRules& rules, std::string_view utf8);
// The index of the first character, or of the first byte of the first code, that is barred; the
// size when none is.
size_t find_barred(const CharsetRules& rules, std::u16string_view units);
size_t find_barred_code(const CharsetRules& rules, std::string_view bytes);

}  // namespace mail
