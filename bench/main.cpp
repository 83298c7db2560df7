// The library and its references side by side: ratios first, then growth.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <regex>
#include <span>

#include <gmime/gmime.h>

#include "wanted.h"

namespace bench {

namespace {

// The size of the library's result, once both sides are found to be right.
size_t check(const Work& work, const Conversion& conversion, const std::string& text) {
  const auto& [language, from, to] = conversion;
  const Function library = work.library(from, to);
  const Function reference = work.reference(from, to);
  const std::string expected =
      convert(from, work.decoded_charset != nullptr ? work.decoded_charset : to, text);
  const Output result = library(text);
  require(work.decode_library(result.view()) == expected, work.name);
  require(work.decode_reference(reference(text).view()) == expected, "a reference");
  return result.view().size();
}

Comparison compare_here(const Work& work, const Conversion& conversion, const std::string& text) {
  const Function library = work.library(conversion.from, conversion.to);
  const Function reference = work.reference(conversion.from, conversion.to);
  return compare([&](size_t calls) { return run_calls(library, text, calls); },
                 [&](size_t calls) { return run_calls(reference, text, calls); });
}

void print_ratio(const std::string& title, const Size& size, double wanted,
                 const Comparison& comparison) {
  std::printf("%-58s %8s %10s %10s %6.2f ", title.c_str(),
              format_size(static_cast<double>(size.bytes)).c_str(),
              format_time(comparison.library.seconds).c_str(),
              format_time(comparison.reference.seconds).c_str(), comparison.ratio);
  wanted == unjudged ? std::printf("%6s     ", "-")
                     : std::printf("%6.2f %-4s", wanted, judge(comparison.ratio, wanted));
}

// Beyond one for each page of the result, where the result has pages of its own.
double count_excess_faults(const Slice& slice, size_t result_size) {
  constexpr size_t page_size = 4096;
  const size_t pages = result_size < page_size ? 0 : result_size / page_size + 1;
  return std::max(0.0, slice.faults - static_cast<double>(pages));
}

void print_faults(const Comparison& comparison, size_t result_size) {
  const double library = count_excess_faults(comparison.library, result_size);
  const double reference = count_excess_faults(comparison.reference, result_size);
  std::printf(" %6.1f %9.1f %s", library, reference, judge(library, wanted_faults));
}

double get_wanted(const Size& size, Judged judged) {
  if (judged == Judged::kTunedBuilds && !is_tuned) return unjudged;
  return build_slack * (has_vector_code ? size.wanted : size.wanted_without_vector_code);
}

enum class Place { kHere, kFreshProcesses };

void print_ratios(const std::vector<Row>& table, Judged judged, Place place,
                  const Selection& is_selected) {
  const bool is_fresh = place == Place::kFreshProcesses;
  std::printf("\n%-58s %8s %10s %10s %6s %6s%s\n", is_fresh ? "in fresh processes" : "work", "size",
              "library", "reference", "ratio", "wanted", is_fresh ? "      faults reference" : "");
  for (const Row& row : table) {
    for (const Conversion& conversion : row.conversions) {
      const std::string title = get_title(row.work, conversion);
      if (!is_selected(title)) continue;
      for (const Size& size : row.sizes) {
        const std::string text =
            make_text_in(conversion.from, conversion.language, row.work.separator, size.bytes);
        const size_t result_size = check(row.work, conversion, text);
        const Comparison comparison = is_fresh ? compare_in_fresh_processes(row, conversion, text)
                                               : compare_here(row.work, conversion, text);
        print_ratio(title, size, get_wanted(size, judged), comparison);
        if (is_fresh) print_faults(comparison, result_size);
        std::printf("\n");
        std::fflush(stdout);
      }
    }
  }
}

}  // namespace

}  // namespace bench

int main(int argc, char** argv) {
  if (argc == 5 && std::strcmp(argv[1], bench::serve_option) == 0) {
    bench::serve(argv[2], argv[3], argv[4]);
    return 0;
  }
  bool is_checked = false;
  bool is_quick = false;
  std::regex filter("");
  constexpr std::string_view filter_option = "--filter=";
  for (const std::string_view argument : std::span(argv, static_cast<size_t>(argc)).subspan(1)) {
    if (argument == "--check") {
      is_checked = true;
    } else if (argument == "--quick") {
      is_quick = true;
    } else if (argument.starts_with(filter_option)) {
      filter = std::string(argument.substr(filter_option.size()));
    } else {
      std::fprintf(stderr, "options: --quick --check --filter=REGEX\n");
      return 2;
    }
  }
  const auto is_selected = [&](const std::string& title) {
    return std::regex_search(title, filter);
  };
  g_mime_init();
  using bench::Judged, bench::Place;
  bench::print_ratios(bench::rows, Judged::kAllBuilds, Place::kHere, is_selected);
  bench::print_ratios(bench::tuned_rows, Judged::kTunedBuilds, Place::kHere, is_selected);
  bench::print_ratios(bench::fresh_rows, Judged::kAllBuilds, Place::kFreshProcesses, is_selected);
  if (!is_quick) bench::print_growth(is_selected);
  std::printf("\nwanted figures missed: %d\n", bench::get_miss_count());
  return is_checked && bench::get_miss_count() != 0 ? 1 : 0;
}
