// The tables that a run ends with.
#pragma once

#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace bench {

std::string format_time(double seconds);
std::string format_size(double bytes);

// "ok" or "MISS", and counts the misses of the run.
const char* judge(bool holds);
int get_miss_count();

// Prints a line for each row as soon as it is measured.
class RatioReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;
};

}  // namespace bench
