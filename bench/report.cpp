// How results are written, and the count of what was missed.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench.h"

namespace bench {

namespace {

int miss_count;

std::string format(const char* pattern, double value) {
  char text[32];
  std::snprintf(text, sizeof text, pattern, value);
  return text;
}

}  // namespace

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "unusable: %s\n", what);
  std::exit(2);
}

std::string get_title(const Work& work, const Conversion& conversion) {
  const auto& [language, from, to] = conversion;
  if (std::strcmp(from, to) == 0) return std::string(work.name) + ", " + get_name(language);
  return std::string(work.name) + ", " + from + " to " + to;
}

std::string format_time(double seconds) {
  if (seconds < 1e-6) return format("%.0f ns", seconds * 1e9);
  if (seconds < 1e-3) return format("%.2f us", seconds * 1e6);
  return format("%.2f ms", seconds * 1e3);
}

std::string format_size(double bytes) {
  if (bytes < 4 * kib) return format("%.0f B", bytes);
  if (bytes < mib) return format("%.0f KiB", bytes / kib);
  if (bytes < gib) return format("%.0f MiB", bytes / mib);
  return format("%.1f GiB", bytes / gib);
}

const char* judge(double measured, double wanted) {
  if (wanted == unjudged) return "";
  if (measured <= wanted) return "ok";
  ++miss_count;
  return "MISS";
}

int get_miss_count() { return miss_count; }

}  // namespace bench
