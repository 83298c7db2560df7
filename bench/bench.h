// What the parts of the benchmark program share: texts, the work that is timed, and its timing.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

inline constexpr size_t kib = 1024;
inline constexpr size_t mib = 1024 * kib;
inline constexpr size_t gib = 1024 * mib;

enum Language { kEnglish, kGerman, kJapanese, kRussian, kKorean, kChinese, kTaiwanese };

const char* get_name(Language language);

// UTF-8 sentences, a separator after each, in an order that is the same in every run. Ends with a
// whole character and has at most size bytes, fewer by three at most.
std::string make_text(Language language, const char* separator, size_t size);

// The same in another charset, in which the size is counted.
std::string make_text_in(const char* charset, Language language, const char* separator,
                         size_t size);

// The whole text, by ICU alone.
std::string convert(const char* from, const char* to, std::string_view text);

// What a call gives: bytes from malloc.
struct Output {
  std::unique_ptr<char, void (*)(void*)> bytes;
  size_t size = std::string_view::npos;  // npos: up to the NUL

  std::string_view view() const {
    return size == std::string_view::npos ? bytes.get() : std::string_view(bytes.get(), size);
  }
};

using Function = std::function<Output(const std::string& text)>;
using MakeFunction = Function (*)(const char* from, const char* to);
using Decode = std::string (*)(std::string_view output);

// A function of the library and the reference that it stands beside, which may be another call of
// the library.
struct Work {
  const char* name;
  const char* separator;  // of the text's sentences
  MakeFunction library;
  Decode decode_library;
  MakeFunction reference;
  Decode decode_reference;
  // What is decoded is the text in this charset, where it is not the one that is converted to.
  const char* decoded_charset = nullptr;
};

struct Conversion {
  Language language;
  const char* from;
  const char* to;
};

extern const Work base64_body, quoted_printable_body;  // names equal
extern const Work chosen_base64_body, chosen_quoted_printable_body;
extern const Work converted_base64_body, converted_quoted_printable_body;
extern const Work b_header, q_header;
extern const Work body_beside_best;  // ICU at its best, without encoding
extern const Work b_header_beside_utf8, q_header_beside_utf8, body_beside_equal_names;
extern const Work body_with_mark, b_header_with_mark, q_header_with_mark;
extern const Work body_from_spelling, header_from_spelling, body_with_byte;
extern const Work iconv_easy, iconv_easy_ex;
extern const Work iconv_allocated, iconv_filled;  // beside ICU at its best
extern const Work iconv_filled_beside_allocated, iconv_failing_beside_converting;
extern const Work mail_header, mail_text;
extern const Work mail_header_beside_utf8, mail_text_beside_body;
extern const Work pieces_beside_icu, pieces_beside_iconv;  // open converters

// Makes the library fill the tables of both charsets, which short texts have to earn.
void fill_tables(const char* from, const char* to);

// References. Converters are opened when the function is made.
Output encode_base64_lines(const std::string& text);       // modp_b64, a line at a time
Output encode_quoted_printable(const std::string& text);   // GMime, the whole text at once
Output encode_header(const std::string& text);             // GMime: encode UTF-8 text, then fold
Output encode_text_part(const std::string& text);          // GMime: a part in its best encoding
Function icu_in_chunks(const char* from, const char* to);  // the chunks of the library's bodies
Function icu_in_two_calls(const char* from, const char* to);
Function icu_with_offsets(const char* from, const char* to);  // with arrays made for each call
// Two steps or ucnv_convertEx(), whichever is faster with the first text, into a buffer that is
// there already.
Function icu_at_its_best(const char* from, const char* to);

std::string decode_base64(std::string_view output);
std::string decode_quoted_printable(std::string_view output);
std::string decode_part(std::string_view output);
std::string decode_header(std::string_view output);  // of a field, too, without its name

// One call, the mean of some.
struct Slice {
  double seconds;  // processor time: what other programs take is not part of it
  double faults;   // of pages
};
Slice run_calls(const Function& function, const std::string& text, size_t calls);

// Runs so many calls, here or in another process.
using Side = std::function<Slice(size_t calls)>;

// As many calls as a slice of a pair takes.
size_t count_calls(const Side& side);

// Medians over pairs: a slice of one side, then a slice of the other. What slows the machine for
// longer than a slice slows both.
struct Comparison {
  Slice library, reference;
  double ratio;
};
Comparison compare(const Side& library, const Side& reference);

double median(std::vector<double> values);

// Sides in processes of their own, for a row of fresh_rows.
struct Row;
Comparison compare_in_fresh_processes(const Row& row, const Conversion& conversion,
                                      const std::string& text);
// What such a process does.
inline constexpr const char* serve_option = "--serve";
void serve(const char* row, const char* conversion, std::string_view side);

// Rows whose title is selected.
using Selection = std::function<bool(const std::string& title)>;
void print_growth(const Selection& is_selected);

// Ends the program unless what it relies on holds: a time would mean nothing.
void require(bool holds, const char* what);

std::string get_title(const Work& work, const Conversion& conversion);
std::string format_time(double seconds);
std::string format_size(double bytes);

// "ok" or "MISS", and counts the misses of the run; "" where nothing is wanted.
inline constexpr double unjudged = 0;
const char* judge(double measured, double wanted);
int get_miss_count();

}  // namespace bench
