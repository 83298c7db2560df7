#include "mail/charset_rules.h"

#include <algorithm>
#include <bitset>

#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace mail {

namespace {

// Barred everywhere: C1 controls, which many take for letters of windows-1252, and private use.
constexpr Range c1_controls = {0x80, 0x9F};
constexpr Range private_use = {0xE000, 0xF8FF};
constexpr uint32_t private_planes = 0xF0000;

// ICU has three of the ASCII controls in each other's places there.
constexpr Range swapped_controls[] = {{0x1A, 0x1A}, {0x1C, 0x1C}, {0x7F, 0x7F}};

// Others read these codes of JIS X 0208 as U+2014, U+2016, U+2212, U+301C, U+00A2, U+00A3 and
// U+00AC, which ICU does not write.
constexpr Range iso_2022_jp[] = {
    {0x2015, 0x2015}, {0x2225, 0x2225}, {0xFF0D, 0xFF0D}, {0xFF5E, 0xFF5E}, {0xFFE0, 0xFFE2}};
constexpr Range shift_jis[] = {{0x1A, 0x1A},     {0x1C, 0x1C},     {0x7F, 0x7F},
                               {0x2015, 0x2015}, {0x2225, 0x2225}, {0xFF0D, 0xFF0D},
                               {0xFF5E, 0xFF5E}, {0xFFE0, 0xFFE2}};
// What vendors added to JIS X 0208: row 13, and letters that only they have.
constexpr Range iso_2022_jp_codes[] = {{0x2D21, 0x2D7E}};
constexpr Range shift_jis_codes[] = {{0x8740, 0x879E}, {0xED40, 0xFCFC}};
constexpr Range euc_jp_codes[] = {{0xADA1, 0xADFE}, {0xF9A1, 0xFCFE}};

constexpr Range big5[] = {{0xAF, 0xAF},     {0x2CD, 0x2CD},   {0x2027, 0x2027}, {0x20AC, 0x20AC},
                          {0x2215, 0x2215}, {0x2295, 0x2295}, {0x2299, 0x2299}, {0x2574, 0x2574},
                          {0xFE51, 0xFE51}, {0xFE68, 0xFE68}, {0xFF0F, 0xFF0F}, {0xFF3C, 0xFF3C},
                          {0xFF5E, 0xFF5E}, {0xFFE0, 0xFFE1}, {0xFFE3, 0xFFE3}, {0xFFE5, 0xFFE5}};
// Without the two ranges of Big5 itself, 0xA140 and 0xC940 on.
constexpr Range big5_codes[] = {{0x8140, 0xA0FE}, {0xC6A1, 0xC8FE}, {0xF9D6, 0xFEFE}};

// What only the vendor's table has, or has elsewhere.
constexpr Range gb2312[] = {{0xB4, 0xB4},     {0x2010, 0x2010}, {0x2015, 0x2015}, {0x2025, 0x2025},
                            {0x2121, 0x2121}, {0x2170, 0x2179}, {0x25BC, 0x25BD}, {0x3006, 0x3007},
                            {0x3012, 0x3012}, {0x309B, 0x309E}, {0x30FB, 0x30FE}, {0x3231, 0x3231},
                            {0xFF07, 0xFF07}, {0xFFE2, 0xFFE2}, {0xFFE4, 0xFFE4}};
constexpr Range gbk[] = {{0x20AC, 0x20AC}, {0x2295, 0x2295}};
// Where the editions of the standard differ.
constexpr Range gb18030[] = {{0x1E3F, 0x1E3F}, {0x9FB4, 0x9FBB}, {0xFE10, 0xFE19}};

constexpr Range euc_kr[] = {{0x3164, 0x3164}};
constexpr Range koi8_u[] = {{0x255D, 0x255D}, {0x256C, 0x256C}};
// What windows-874 has beyond TIS-620.
constexpr Range tis_620[] = {{0xA0, 0xA0},     {0x2013, 0x2014}, {0x2018, 0x2019}, {0x201C, 0x201D},
                             {0x2022, 0x2022}, {0x2026, 0x2026}, {0x20AC, 0x20AC}};
constexpr Range windows_1253[] = {{0xAA, 0xAA}};

constexpr CharsetRules charsets[] = {
    {"UTF-8"},
    {"US-ASCII"},
    {"ISO-8859-1"},
    {"ISO-8859-2"},
    {"ISO-8859-3"},
    {"ISO-8859-4"},
    {"ISO-8859-5"},
    {"ISO-8859-6"},
    {"ISO-8859-7"},
    {"ISO-8859-8"},
    {"ISO-8859-9"},
    {"ISO-8859-13"},
    {"ISO-8859-15"},
    {"windows-1250"},
    {"windows-1251"},
    {"windows-1252"},
    {"windows-1253", windows_1253},
    {"windows-1254"},
    {"windows-1255"},
    {"windows-1256"},
    {"windows-1257"},
    {"windows-1258"},
    {"KOI8-R"},
    {"KOI8-U", koi8_u},
    {"IBM866", swapped_controls},
    {"TIS-620", tis_620},
    {"ISO-2022-JP", iso_2022_jp, iso_2022_jp_codes, Codes::kIso2022Jp},
    {"Shift_JIS", shift_jis, shift_jis_codes, Codes::kShiftJis},
    {"EUC-JP", iso_2022_jp, euc_jp_codes, Codes::kEucJp},
    {"EUC-KR", euc_kr, {}, Codes::kPairs},
    {"Big5", big5, big5_codes, Codes::kPairs},
    {"GB2312", gb2312, {}, Codes::kPairs},
    {"GBK", gbk, {}, Codes::kPairs},
    {"GB18030", gb18030, {}, Codes::kGb18030},
};

// Names of ICU's for charsets that are written as others, which more readers know.
struct OtherName {
  std::string_view name;
  std::string_view written;
};
constexpr OtherName other_names[] = {{"KSC_5601", "EUC-KR"},
                                     {"cp1363", "EUC-KR"},
                                     {"ISO-2022-JP-1", "ISO-2022-JP"},
                                     {"ISO-2022-JP-2", "ISO-2022-JP"}};

bool is_in(Range range, uint32_t value) { return range.first <= value && value <= range.last; }

bool is_in(std::span<const Range> ranges, uint32_t value) {
  const auto after = std::ranges::upper_bound(ranges, value, {}, &Range::first);
  return after != ranges.begin() && value <= after[-1].last;
}

bool is_barred(const CharsetRules& rules, uint32_t character) {
  return is_in(c1_controls, character) || is_in(private_use, character) ||
         character >= private_planes || is_in(rules.barred, character);
}

}  // namespace

const CharsetRules* find_charset_rules(std::string_view standard_name) {
  for (const OtherName& other : other_names) {
    if (standard_name == other.name) standard_name = other.written;
  }
  const auto* const found = std::ranges::find(charsets, standard_name, &CharsetRules::name);
  return found != std::end(charsets) ? found : nullptr;
}

size_t measure_code(Codes codes, std::string_view bytes) {
  const auto lead = static_cast<unsigned char>(bytes[0]);
  constexpr Range half_width = {0xA1, 0xDF};
  if (lead < 0x80 || codes == Codes::kBytes) return 1;
  if (codes == Codes::kShiftJis && is_in(half_width, lead)) return 1;
  if (codes == Codes::kEucJp && lead == 0x8F) return 3;
  const bool is_four =
      codes == Codes::kGb18030 && bytes.size() > 1 && bytes[1] <= '9' && bytes[1] >= '0';
  return is_four ? 4 : 2;
}

bool has_barred(const CharsetRules& rules, std::string_view utf8) {
  constexpr uint32_t ascii_end = 0x80;
  const bool bars_ascii = !rules.barred.empty() && rules.barred.front().first < ascii_end;
  // Most pages of characters have nothing that is barred.
  constexpr unsigned page_bits = 8;
  std::bitset<(private_planes >> page_bits)> pages;
  const auto mark = [&pages](Range range) {
    for (uint32_t page = range.first >> page_bits; page <= range.last >> page_bits; ++page) {
      pages.set(page);
    }
  };
  for (const Range range : {c1_controls, private_use}) mark(range);
  for (const Range range : rules.barred) mark(range);
  for (size_t next = 0; next < utf8.size();) {
    if (U8_IS_SINGLE(utf8[next]) && !bars_ascii) {
      ++next;
      continue;
    }
    uint32_t character;
    U8_NEXT_UNSAFE(utf8.data(), next, character);
    const bool is_fine = character < private_planes && !pages[character >> page_bits];
    if (!is_fine && is_barred(rules, character)) return true;
  }
  return false;
}

size_t find_barred(const CharsetRules& rules, std::u16string_view units) {
  for (size_t next = 0; next < units.size();) {
    const size_t index = next;
    uint32_t character;
    U16_NEXT(units.data(), next, units.size(), character);
    if (is_barred(rules, character)) return index;
  }
  return units.size();
}

size_t find_barred_code(const CharsetRules& rules, std::string_view bytes) {
  if (rules.barred_codes.empty()) return bytes.size();
  constexpr char escape = '\x1B';
  constexpr size_t escape_size = 3;
  bool is_double = false;
  for (size_t index = 0; index < bytes.size();) {
    if (rules.codes == Codes::kIso2022Jp && bytes[index] == escape) {
      is_double = bytes[index + 1] == '$';
      index += escape_size;
      continue;
    }
    const std::string_view rest = bytes.substr(index);
    const size_t size = rules.codes != Codes::kIso2022Jp ? measure_code(rules.codes, rest)
                        : is_double                      ? 2
                                                         : 1;
    if (size == 2 && index + 1 < bytes.size()) {
      const uint32_t code = static_cast<unsigned char>(bytes[index]) << 8 |
                            static_cast<unsigned char>(bytes[index + 1]);
      const auto has_code = [code](Range range) { return is_in(range, code); };
      if (std::ranges::any_of(rules.barred_codes, has_code)) return index;
    }
    index += size;
  }
  return bytes.size();
}

}  // namespace mail
