// The clock, and the comparison of two sides.
#include <sys/resource.h>
#include <time.h>

#include <algorithm>

#include "bench.h"

namespace bench {

namespace {

double read_clock() {
  timespec now;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double count_faults() {
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_minflt);
}

Slice find_median(const std::vector<Slice>& slices) {
  std::vector<double> seconds, faults;
  for (const Slice& slice : slices) {
    seconds.push_back(slice.seconds);
    faults.push_back(slice.faults);
  }
  return {median(seconds), median(faults)};
}

}  // namespace

Slice run_calls(const Function& function, const std::string& text, size_t calls) {
  const double faults = count_faults();
  const double start = read_clock();
  for (size_t i = 0; i < calls; ++i) function(text);
  const double seconds = read_clock() - start;
  const double count = static_cast<double>(calls);
  return {seconds / count, (count_faults() - faults) / count};
}

size_t count_calls(const Side& side) {
  constexpr double slice_seconds = 2e-3;
  side(1);  // the first call may have to prepare something
  for (size_t calls = 1;; calls *= 2) {
    if (side(calls).seconds * static_cast<double>(calls) >= slice_seconds) return calls;
  }
}

Comparison compare(const Side& library, const Side& reference) {
  const size_t library_calls = count_calls(library);
  const size_t reference_calls = count_calls(reference);
  const bool is_long = library_calls == 1 && reference_calls == 1;
  const int pairs = is_long ? 21 : 101;
  std::vector<Slice> library_slices, reference_slices;
  std::vector<double> ratios;
  for (int pair = 0; pair < pairs; ++pair) {
    const bool library_first = pair % 2 == 0;
    if (library_first) library_slices.push_back(library(library_calls));
    reference_slices.push_back(reference(reference_calls));
    if (!library_first) library_slices.push_back(library(library_calls));
    ratios.push_back(library_slices.back().seconds / reference_slices.back().seconds);
  }
  return {find_median(library_slices), find_median(reference_slices), median(ratios)};
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace bench
