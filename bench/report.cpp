#include "report.h"

#include <cmath>
#include <cstdio>

namespace bench {

namespace {

int miss_count;

std::string format(const char* pattern, double value, const char* unit) {
  char text[32];
  std::snprintf(text, sizeof text, pattern, value, unit);
  return text;
}

}  // namespace

std::string format_time(double seconds) {
  if (seconds < 1e-6) return format("%.0f %s", seconds * 1e9, "ns");
  if (seconds < 1e-3) return format("%.2f %s", seconds * 1e6, "us");
  return format("%.2f %s", seconds * 1e3, "ms");
}

std::string format_size(double bytes) {
  constexpr double kib = 1024;
  if (bytes < 4 * kib) return format("%.0f %s", bytes, "B");
  if (bytes < kib * kib) return format("%.0f %s", bytes / kib, "KiB");
  return format("%.0f %s", bytes / (kib * kib), "MiB");
}

const char* judge(bool holds) {
  if (holds) return "ok";
  ++miss_count;
  return "MISS";
}

int get_miss_count() { return miss_count; }

bool RatioReporter::ReportContext(const Context& /*context*/) {
  std::printf("%-48s %8s %10s %10s %6s %6s\n", "work", "size", "library", "reference", "ratio",
              "wanted");
  return true;
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Iteration) continue;
    const auto get = [&run](const char* name) { return run.counters.at(name).value; };
    const std::string work = run.run_name.function_name;
    std::printf("%-48s %8s %10s %10s %6.2f %6.2f %s\n", work.substr(0, work.rfind('/')).c_str(),
                format_size(get("size")).c_str(), format_time(get("library")).c_str(),
                format_time(get("reference")).c_str(), get("ratio"), get("wanted"),
                judge(get("ratio") <= get("wanted")));
    std::fflush(stdout);
  }
}

}  // namespace bench
