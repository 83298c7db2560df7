// What is measured, and every figure that is wanted of it.
#pragma once

#include <vector>

#include "bench.h"

namespace bench {

// The figures are for a Release build on a processor with AVX2. A build with Debian's flags may
// take a little longer. Without vector code other figures stand for these, and only where they are
// given.
inline constexpr double build_slack = QORVII18N_BENCH_RELEASE ? 1 : 1.15;
inline constexpr bool has_vector_code = QORVII18N_BENCH_VECTOR;
inline constexpr bool is_tuned = QORVII18N_BENCH_RELEASE && has_vector_code;
enum class Judged { kAllBuilds, kTunedBuilds };

struct Size {
  size_t bytes;              // of the text
  double wanted = unjudged;  // time of the library / time of the reference
  double wanted_without_vector_code = unjudged;
};

struct Row {
  const Work& work;
  std::vector<Conversion> conversions;  // each is measured with each size
  std::vector<Size> sizes;
};

inline const std::vector<Row> rows = {
    {base64_body, {{kEnglish, "UTF-8", "UTF-8"}}, {{64 * kib, .32, .95}, {8 * mib, .32, .95}}},
    {quoted_printable_body, {{kEnglish, "UTF-8", "UTF-8"}}, {{64 * kib, .14}}},
    {quoted_printable_body,
     {{kGerman, "UTF-8", "UTF-8"}},
     {{64 * kib, .20, .45}, {8 * mib, .20, .45}}},
    {quoted_printable_body, {{kJapanese, "UTF-8", "UTF-8"}}, {{64 * kib, .26}}},
    {chosen_quoted_printable_body, {{kEnglish, "UTF-8", "UTF-8"}}, {{64 * kib, .15}}},
    {chosen_base64_body, {{kJapanese, "UTF-8", "UTF-8"}}, {{64 * kib, .36}}},
    {converted_base64_body, {{kJapanese, "Shift_JIS", "ISO-2022-JP"}}, {{64 * kib, 1.0}}},
    {converted_quoted_printable_body,
     {{kGerman, "UTF-8", "ISO-8859-1"}},
     {{300, 1.4}, {64 * kib, .80}, {8 * mib, 1.10}}},
    {converted_base64_body, {{kGerman, "ISO-8859-1", "UTF-8"}}, {{64 * kib, .80}}},
    {b_header, {{kGerman, "UTF-8", "UTF-8"}}, {{40, .22}, {200, .20}, {4096, .18}}},
    {b_header, {{kJapanese, "UTF-8", "UTF-8"}}, {{40, .30}, {200, .36}, {4096, .42}}},
    {q_header, {{kGerman, "UTF-8", "UTF-8"}}, {{40, .36}, {200, .32}, {4096, .34}}},
    {q_header, {{kJapanese, "UTF-8", "UTF-8"}}, {{40, .45}, {200, .52}, {4096, .65}}},
    {iconv_easy, {{kGerman, "UTF-8", "ISO-8859-1"}}, {{64, .95}, {64 * kib, 1.05}}},
    {iconv_easy, {{kGerman, "ISO-8859-1", "UTF-8"}}, {{64, .95}, {64 * kib, 1.05}}},
    {mail_header, {{kGerman, "UTF-8", "UTF-8"}}, {{40, .9}, {4096, .9}}},
    {mail_header, {{kJapanese, "UTF-8", "UTF-8"}}, {{40, .9}, {4096, .9}}},
    {mail_text, {{kGerman, "UTF-8", "UTF-8"}}, {{4096, .9}, {mib, .9}}},
    {mail_text, {{kJapanese, "UTF-8", "UTF-8"}}, {{4096, .9}, {mib, .9}}},
    {pieces_beside_icu, {{kGerman, "UTF-8", "ISO-8859-1"}}, {{mib, 1.0}}},
    {pieces_beside_icu, {{kJapanese, "Shift_JIS", "UTF-8"}}, {{mib, 1.0}}},
    {pieces_beside_icu, {{kJapanese, "UTF-8", "GB18030"}}, {{mib, 1.0}}},
    {pieces_beside_icu, {{kRussian, "KOI8-R", "windows-1251"}}, {{mib, 1.0}}},
    {pieces_beside_icu, {{kGerman, "ISO-8859-1", "windows-1252"}}, {{mib, 1.0}}},
    {pieces_beside_icu, {{kJapanese, "ISO-2022-JP", "UTF-8"}}, {{mib, 1.15}}},
    {pieces_beside_iconv, {{kGerman, "UTF-8", "ISO-8859-1"}}, {{mib, .5}}},
    {pieces_beside_iconv, {{kJapanese, "Shift_JIS", "UTF-8"}}, {{mib, .5}}},
    {pieces_beside_iconv, {{kJapanese, "UTF-8", "GB18030"}}, {{mib, .5}}},
};

inline const std::vector<Conversion> to_multi_byte = {{kJapanese, "UTF-8", "Shift_JIS"},
                                                      {kKorean, "UTF-8", "EUC-KR"},
                                                      {kChinese, "UTF-8", "GBK"},
                                                      {kTaiwanese, "UTF-8", "Big5"}};
inline const std::vector<Conversion> to_long_codes = {{kJapanese, "UTF-8", "EUC-JP"},
                                                      {kChinese, "UTF-8", "GB18030"}};
inline const std::vector<Conversion> to_single_byte = {{kGerman, "UTF-8", "windows-1252"},
                                                       {kRussian, "UTF-8", "KOI8-R"}};
inline const std::vector<Conversion> from_small = {{kGerman, "windows-1252", "UTF-8"},
                                                   {kRussian, "KOI8-R", "UTF-8"},
                                                   {kKorean, "EUC-KR", "UTF-8"}};
inline const std::vector<Conversion> from_large = {{kJapanese, "Shift_JIS", "UTF-8"},
                                                   {kChinese, "GBK", "UTF-8"},
                                                   {kTaiwanese, "Big5", "UTF-8"},
                                                   {kJapanese, "EUC-JP", "UTF-8"},
                                                   {kChinese, "GB18030", "UTF-8"}};
inline const std::vector<Conversion> to_same = {{kRussian, "UTF-8", "UTF-8"},
                                                {kEnglish, "UTF-8", "US-ASCII"}};
inline const std::vector<Conversion> latin1 = {{kGerman, "UTF-8", "ISO-8859-1"},
                                               {kGerman, "ISO-8859-1", "UTF-8"}};

// These figures are for a Release build with vector code; others only show what they measure.
inline const std::vector<Row> tuned_rows = {
    {iconv_allocated, to_single_byte, {{64, 1.0}, {kib, 1.0}, {64 * kib, 1.0}}},
    {iconv_allocated, to_multi_byte, {{64, 1.0}, {kib, 1.0}, {64 * kib, 1.0}}},
    {iconv_allocated, to_long_codes, {{kib, .35}, {64 * kib, .35}}},
    {iconv_allocated, from_small, {{kib, .45}, {64 * kib, .45}}},
    {iconv_allocated, from_large, {{kib, .25}, {64 * kib, .25}}},
    {iconv_allocated, to_same, {{kib, .4}, {64 * kib, .4}}},
    {iconv_allocated, latin1, {{kib, .2}, {64 * kib, .2}}},
    {iconv_filled_beside_allocated, latin1, {{kib, 1.1}, {64 * kib, 1.1}}},
    {iconv_filled, to_single_byte, {{8 * mib, 1.0}}},
    {iconv_filled, to_multi_byte, {{8 * mib, 1.0}}},
    {iconv_filled, to_long_codes, {{8 * mib, .35}}},
    {iconv_filled, from_small, {{8 * mib, .45}}},
    {iconv_filled, from_large, {{8 * mib, .25}}},
    {iconv_filled, to_same, {{8 * mib, .4}}},
    {iconv_filled, latin1, {{8 * mib, .2}}},
    {body_beside_best, to_single_byte, {{40, 1.5}, {200, 1.5}, {64 * kib, 1.9}}},
    {body_beside_best, to_multi_byte, {{40, 1.5}, {200, 1.5}, {64 * kib, 1.9}}},
    {b_header_beside_utf8, to_single_byte, {{40, 2.5}, {200, 2.5}}},
    {b_header_beside_utf8, to_multi_byte, {{40, 2.5}, {200, 2.5}}},
    {q_header_beside_utf8, to_single_byte, {{40, 2.5}, {200, 2.5}}},
    {q_header_beside_utf8, to_multi_byte, {{40, 2.5}, {200, 2.5}}},
    {body_beside_equal_names, {{kRussian, "UTF-8", "utf-8"}}, {{64 * kib, 2.0}}},
    {body_with_mark, to_single_byte, {{200, 1.5}, {64 * kib, 1.5}}},
    {b_header_with_mark, to_single_byte, {{200, 1.5}}},
    {b_header_with_mark, to_multi_byte, {{200, 1.5}}},
    {q_header_with_mark, to_single_byte, {{200, 1.5}}},
    {body_from_spelling, {{kRussian, "UTF-8", "utf-8"}}, {{200, 1.5}, {64 * kib, 1.5}}},
    {header_from_spelling, {{kRussian, "UTF-8", "UTF-8"}}, {{200, 1.5}}},
    {body_with_byte, {{kJapanese, "UTF-8", "ISO-2022-JP"}}, {{16383, 1.5}}},
    {iconv_failing_beside_converting, to_single_byte, {{64 * kib, 4}}},
    {iconv_failing_beside_converting, to_multi_byte, {{64 * kib, 4}}},
    {mail_header, {{kEnglish, "UTF-8", "UTF-8"}}, {{40, .45}}},
    {mail_header, {{kGerman, "UTF-8", "UTF-8"}, {kJapanese, "UTF-8", "UTF-8"}}, {{40, .3}}},
    {mail_header_beside_utf8, to_single_byte, {{40, 2.5}, {200, 2.5}, {4096, 2.5}}},
    {mail_header_beside_utf8, to_multi_byte, {{40, 2.5}, {200, 2.5}, {4096, 2.5}}},
    {mail_header_beside_utf8, to_long_codes, {{40, 2.5}, {200, 2.5}, {4096, 2.5}}},
    {mail_header_beside_utf8,
     {{kJapanese, "UTF-8", "ISO-2022-JP"}, {kGerman, "UTF-8", "ISO-8859-1"}},
     {{40, 2.5}, {200, 2.5}, {4096, 2.5}}},
    {mail_text_beside_body,
     {{kEnglish, "UTF-8", "UTF-8"}, {kGerman, "UTF-8", "UTF-8"}, {kJapanese, "UTF-8", "UTF-8"}},
     {{4096, 2.0}, {mib, 2.0}}},
};

// Each side in a process that does nothing else, so that its heap is as its own calls leave it.
inline const std::vector<Size> one_shot_sizes = {
    {64, 1.0}, {1000, 1.05}, {4096, 1.05}, {64 * kib, 1.05}};
inline const std::vector<Row> fresh_rows = {
    {iconv_easy_ex, {{kGerman, "UTF-8", "ISO-8859-1"}}, one_shot_sizes},
    {iconv_easy_ex, {{kGerman, "ISO-8859-1", "UTF-8"}}, one_shot_sizes},
    {iconv_easy_ex, {{kJapanese, "Shift_JIS", "UTF-8"}}, one_shot_sizes},
    {base64_body, {{kEnglish, "UTF-8", "UTF-8"}}, {{300}, {64 * kib}, {8 * mib}}},
    {quoted_printable_body, {{kGerman, "UTF-8", "UTF-8"}}, {{300}, {64 * kib}, {8 * mib}}},
    {converted_base64_body,
     {{kJapanese, "Shift_JIS", "ISO-2022-JP"}},
     {{300}, {64 * kib}, {8 * mib}}},
    {converted_quoted_printable_body,
     {{kGerman, "UTF-8", "ISO-8859-1"}},
     {{300}, {64 * kib}, {8 * mib}}},
};

// Page faults of a call in such a process, beyond one for each page of its result. Half a fault is
// none: a process has business of its own now and then.
inline constexpr double wanted_faults = .5;

// As the text grows, in steps of four times.
inline constexpr size_t growth_smallest = kib;
inline constexpr size_t growth_largest = gib;
// Past this size, where no cache of the processor holds text and result any more, the time per byte
// stays within this factor...
inline constexpr size_t time_settled = 4 * mib;
inline constexpr double wanted_spread = 1.5;
// ...and from this one on, the peak of memory is at most so many times text and result together.
inline constexpr size_t peak_settled = mib;

struct GrowthRow {
  const Work& work;
  const char* from;
  const char* to;
  double wanted_peak = unjudged;
};

inline const std::vector<GrowthRow> growth_rows = {
    {base64_body, "UTF-8", "UTF-8", 2},
    {quoted_printable_body, "UTF-8", "UTF-8", 2},
    {converted_base64_body, "UTF-8", "ISO-8859-1", 2},
    {converted_quoted_printable_body, "UTF-8", "ISO-8859-1", 2},
    {b_header, "UTF-8", "UTF-8"},
    {q_header, "UTF-8", "UTF-8"},
    // A pair that ICU converts at any size. Those that go without it do so up to 2 GiB of room.
    {iconv_easy, "UTF-8", "ISO-8859-15"},
    {iconv_easy_ex, "UTF-8", "ISO-8859-15"},
};

}  // namespace bench
