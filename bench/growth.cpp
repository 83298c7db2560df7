// Time per byte and peak of memory as a text grows, each in a process of its own.
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <limits>

#include "wanted.h"

namespace bench {

namespace {

double read_memory_entry(const char* file, std::string_view name) {
  std::ifstream entries(file);
  std::string word;
  while (entries >> word && word != name) continue;
  double entry_kib = 0;
  entries >> entry_kib;
  require(!entries.fail(), file);
  return entry_kib * kib;
}

struct Usage {
  double output;
  double peak;       // beyond what the process had before the input was made
  double factor;     // time per byte, compared with that of the smallest text
  double base_time;  // of a byte of that text, at its best
};

Usage measure(const GrowthRow& row, size_t size) {
  constexpr const char* status = "/proc/self/status";
  const Function function = row.work.library(row.from, row.to);
  const std::string base = make_text(kGerman, row.work.separator, growth_smallest);
  malloc_trim(0);  // what is free already would hide growth
  const double before = read_memory_entry(status, "VmRSS:");
  const std::string text = make_text(kGerman, row.work.separator, size);
  std::ofstream("/proc/self/clear_refs") << "5";  // the peak starts over
  Usage usage;
  usage.output = static_cast<double>(function(text).view().size());
  usage.peak = read_memory_entry(status, "VmHWM:") - before;

  // From now on the process keeps the memory that it frees. To hand out cleared pages again and
  // again is work of the kernel, and it does not do that for small blocks.
  mallopt(M_MMAP_MAX, 0);
  mallopt(M_TRIM_THRESHOLD, -1);
  const auto time_byte = [&](const std::string& of, size_t calls) {
    return run_calls(function, of, calls).seconds / static_cast<double>(of.size());
  };
  const bool is_long = size >= 64 * mib;
  const size_t calls =
      is_long ? 1 : count_calls([&](size_t count) { return run_calls(function, text, count); });
  const size_t base_calls =
      count_calls([&](size_t count) { return run_calls(function, base, count); });
  // In pairs, too: the text against the base, right before and after it. The base's best speed
  // makes a time of the factor, so that a slow spell of the machine does not pass for growth.
  const int rounds = is_long ? 3 : 15;
  usage.base_time = std::numeric_limits<double>::infinity();
  std::vector<double> factors;
  for (int round = 0; round < rounds; ++round) {
    const double first = time_byte(base, base_calls);
    const double time = time_byte(text, calls);
    const double last = time_byte(base, base_calls);
    usage.base_time = std::min({usage.base_time, first, last});
    factors.push_back(2 * time / (first + last));
  }
  usage.factor = median(factors);
  return usage;
}

Usage measure_in_child(const GrowthRow& row, size_t size) {
  int ends[2];
  require(pipe(ends) == 0, "pipe");
  const pid_t child = fork();
  require(child >= 0, "fork");
  if (child == 0) {
    const Usage usage = measure(row, size);
    _exit(write(ends[1], &usage, sizeof usage) == sizeof usage ? 0 : 1);
  }
  Usage usage;
  close(ends[1]);
  require(read(ends[0], &usage, sizeof usage) == sizeof usage, "growth");
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return usage;
}

std::vector<size_t> choose_sizes() {
  constexpr double copies = 14;  // more than any call needs
  const double available = read_memory_entry("/proc/meminfo", "MemAvailable:");
  std::vector<size_t> sizes;
  for (size_t size = growth_smallest; size <= growth_largest; size *= 4) {
    if (copies * static_cast<double>(size) < available) sizes.push_back(size);
  }
  return sizes;
}

void print_row(const GrowthRow& row, const std::vector<size_t>& sizes) {
  std::vector<Usage> usages;
  usages.reserve(sizes.size());
  for (const size_t size : sizes) usages.push_back(measure_in_child(row, size));
  double base_time = std::numeric_limits<double>::infinity();
  for (const Usage& usage : usages) base_time = std::min(base_time, usage.base_time);

  double least = std::numeric_limits<double>::infinity(), most = 0;
  std::printf("  ns per byte ");
  for (size_t i = 0; i < sizes.size(); ++i) {
    const double time = 1e9 * base_time * usages[i].factor;
    std::printf(" %8.2f", time);
    if (sizes[i] <= time_settled) continue;
    least = std::min(least, time);
    most = std::max(most, time);
  }
  std::printf("   spread %.2f %s\n", most / least, judge(most / least, wanted_spread));

  double worst = 0;
  std::printf("  peak memory ");
  for (size_t i = 0; i < sizes.size(); ++i) {
    std::printf(" %8s", format_size(usages[i].peak).c_str());
    const double text_and_output = static_cast<double>(sizes[i]) + usages[i].output;
    if (sizes[i] >= peak_settled) worst = std::max(worst, usages[i].peak / text_and_output);
  }
  std::printf("   / (text + result) %.2f %s\n", worst, judge(worst, row.wanted_peak));
}

}  // namespace

void print_growth(const Selection& is_selected) {
  const std::vector<size_t> sizes = choose_sizes();
  std::printf("\n%-14s", "growth");
  for (const size_t size : sizes)
    std::printf(" %8s", format_size(static_cast<double>(size)).c_str());
  std::printf("\n");
  for (const GrowthRow& row : growth_rows) {
    const std::string title = get_title(row.work, {kGerman, row.from, row.to});
    if (!is_selected(title)) continue;
    std::printf("%s\n", title.c_str());
    std::fflush(stdout);
    print_row(row, sizes);
  }
}

}  // namespace bench
