#include "pairs.h"

#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <benchmark/benchmark.h>

namespace bench {

namespace {

constexpr double slice_seconds = 2e-3;
constexpr int pairs_per_row = 101;

// Processor time: what other programs take is not part of it.
double read_clock() {
  timespec now;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double time_calls(const std::function<void()>& call, size_t count) {
  const double start = read_clock();
  for (size_t i = 0; i < count; ++i) call();
  return (read_clock() - start) / static_cast<double>(count);
}

struct Slice {
  size_t calls;
  double time;  // of one call
};

// As many calls as a slice takes.
Slice run_first_slice(const std::function<void()>& call) {
  for (size_t calls = 1;; calls *= 2) {
    const double time = time_calls(call, calls);
    if (time * static_cast<double>(calls) >= slice_seconds) return {calls, time};
  }
}

void run_pairs(benchmark::State& state, const Row& row) {
  const size_t library_calls = run_first_slice(row.library).calls;
  const size_t reference_calls = run_first_slice(row.reference).calls;
  std::vector<double> library_times, reference_times, ratios;
  for (auto _ : state) {
    const bool library_first = ratios.size() % 2 == 0;
    double library = library_first ? time_calls(row.library, library_calls) : 0;
    const double reference = time_calls(row.reference, reference_calls);
    if (!library_first) library = time_calls(row.library, library_calls);
    state.SetIterationTime(library);
    library_times.push_back(library);
    reference_times.push_back(reference);
    ratios.push_back(library / reference);
  }
  state.counters["size"] = static_cast<double>(row.size);
  state.counters["library"] = median(library_times);
  state.counters["reference"] = median(reference_times);
  state.counters["ratio"] = median(ratios);
  state.counters["wanted"] = row.wanted;
}

}  // namespace

void register_row(const Row& row) {
  benchmark::RegisterBenchmark((row.work + "/" + std::to_string(row.size)).c_str(),
                               [row](benchmark::State& state) { run_pairs(state, row); })
      ->UseManualTime()
      ->Iterations(pairs_per_row);
}

double time_call(const std::function<void()>& call) {
  constexpr double enough_seconds = 0.05;
  const Slice first = run_first_slice(call);
  const double calls = std::ceil(enough_seconds / first.time);
  return time_calls(call, static_cast<size_t>(calls));
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

void require(bool agrees, const std::string& what) {
  if (agrees) return;
  std::fprintf(stderr, "unusable: %s\n", what.c_str());
  std::exit(2);
}

}  // namespace bench
