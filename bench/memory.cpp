// Peak memory of a body call, each in a process of its own.
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>

#include "body_works.h"
#include "families.h"
#include "pairs.h"
#include "proc.h"
#include "report.h"
#include "texts.h"

namespace bench {

namespace {

constexpr size_t input_size = size_t{128} << 20;

struct Usage {
  double output;
  double peak;  // beyond what the process had before the input was made
};

Usage measure(const BodyWork& work) {
  constexpr const char* status = "/proc/self/status";
  malloc_trim(0);  // what is free already would hide growth
  const double before = read_memory_entry(status, "VmRSS:");
  const std::string text = make_text(Language::kGerman, input_size);
  std::ofstream("/proc/self/clear_refs") << "5";  // the peak starts over
  char* result = work.encode(text.c_str(), work.from_charset, work.to_charset);
  return {static_cast<double>(std::strlen(result)), read_memory_entry(status, "VmHWM:") - before};
}

Usage measure_in_child(const BodyWork& work) {
  int ends[2];
  require(pipe(ends) == 0, "pipe");
  const pid_t child = fork();
  require(child >= 0, "child process");
  if (child == 0) {
    const Usage usage = measure(work);
    _exit(write(ends[1], &usage, sizeof usage) == sizeof usage ? 0 : 1);
  }
  Usage usage;
  close(ends[1]);
  require(read(ends[0], &usage, sizeof usage) == sizeof usage, "peak memory");
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return usage;
}

}  // namespace

void print_memory() {
  constexpr double input = input_size;
  std::printf("\n%-16s %10s %10s %10s %10s\n", "peak memory", "input", "output", "peak", "wanted");
  for (const BodyWork& work : body_works) {
    std::fflush(stdout);
    const Usage usage = measure_in_child(work);
    const double wanted = 2 * (input + usage.output);
    std::printf("%-16s %10s %10s %10s %10s %s\n", work.name, format_size(input).c_str(),
                format_size(usage.output).c_str(), format_size(usage.peak).c_str(),
                format_size(wanted).c_str(), judge(usage.peak <= wanted));
  }
}

}  // namespace bench
