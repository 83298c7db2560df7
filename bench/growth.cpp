// Time per byte from 1 KiB to 256 MiB.
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "body_works.h"
#include "families.h"
#include "pairs.h"
#include "proc.h"
#include "report.h"
#include "texts.h"

namespace bench {

namespace {

constexpr size_t smallest = 1024;
constexpr size_t largest = size_t{256} << 20;
constexpr size_t step = 4;
constexpr size_t settled = size_t{64} << 10;  // past this size, the time per byte stays within...
constexpr double wanted_spread = 1.5;         // ...this factor

std::vector<std::string> make_texts() {
  constexpr double copies = 8;  // more than any call needs
  std::vector<std::string> texts;
  for (size_t size = smallest; size <= largest; size *= step) {
    const double needed = copies * static_cast<double>(size);
    if (needed > read_memory_entry("/proc/meminfo", "MemAvailable:")) break;
    texts.push_back(make_text(Language::kGerman, size));
  }
  return texts;
}

double time_per_byte(const BodyWork& work, const std::string& text) {
  const double time = time_call(
      [&] { i18n_mime_free(work.encode(text.c_str(), work.from_charset, work.to_charset)); });
  return 1e9 * time / static_cast<double>(text.size());
}

// In pairs, too: each size against the base, right before and after it. The factors are given at
// the base's best speed, so that a slow spell of the machine does not pass for growth.
std::vector<double> measure(const BodyWork& work, const std::vector<std::string>& texts) {
  constexpr int rounds = 7;
  double best_base = std::numeric_limits<double>::infinity();
  std::vector<double> times;
  for (const std::string& text : texts) {
    std::vector<double> factors;
    for (int round = 0; round < rounds; ++round) {
      const double before = time_per_byte(work, texts.front());
      const double time = time_per_byte(work, text);
      const double after = time_per_byte(work, texts.front());
      best_base = std::min({best_base, before, after});
      factors.push_back(2 * time / (before + after));
    }
    times.push_back(median(factors));
  }
  for (double& time : times) time *= best_base;
  return times;
}

// From now on the process keeps the memory that it frees. To hand out cleared pages again and again
// is work of the kernel, and it does not do that for small blocks.
void keep_freed_memory() {
  mallopt(M_MMAP_MAX, 0);
  mallopt(M_TRIM_THRESHOLD, -1);
}

}  // namespace

void print_growth() {
  keep_freed_memory();
  const std::vector<std::string> texts = make_texts();
  const auto first_settled =
      std::count_if(texts.begin(), texts.end(), [](auto& text) { return text.size() <= settled; });
  std::printf("\n%-12s", "ns per byte");
  for (const std::string& text : texts) {
    std::printf(" %7s", format_size(static_cast<double>(text.size())).c_str());
  }
  std::printf("  spread past 64 KiB\n");
  for (const BodyWork& work : body_works) {
    const std::vector<double> times = measure(work, texts);
    std::printf("%-12s", work.name);
    for (const double time : times) std::printf(" %7.2f", time);
    const auto [least, most] = std::minmax_element(times.begin() + first_settled, times.end());
    const double spread = *most / *least;
    std::printf("  %.2f %s\n", spread, judge(spread <= wanted_spread));
    std::fflush(stdout);
  }
}

}  // namespace bench
