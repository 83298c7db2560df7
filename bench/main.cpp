// The library and its peers side by side: ratios first, then what a call costs at least, memory and
// growth.
#include <algorithm>
#include <cstdio>
#include <string_view>

#include <benchmark/benchmark.h>

#include "families.h"
#include "peers.h"
#include "report.h"

namespace {

bool take_flag(int& argc, char** argv, std::string_view flag) {
  char** const end = argv + argc;
  char** const kept_end = std::remove(argv, end, flag);
  argc = static_cast<int>(kept_end - argv);
  return kept_end != end;
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const bool check = take_flag(argc, argv, "--check");
  const bool quick = take_flag(argc, argv, "--quick");
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  bench::init_peers();
  bench::add_body_rows();
  bench::add_header_rows();
  bench::add_one_shot_rows();
  bench::RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);

  bench::print_overhead();
  if (!quick) {
    bench::print_memory();
    bench::print_growth();
  }

  std::printf("\nwanted figures missed: %d\n", bench::get_miss_count());
  return check && bench::get_miss_count() != 0 ? 1 : 0;
}
