// Calls all functions from several threads over all charsets for some minutes.
//
//   soak MINUTES    0 for one round over all charsets
//
// Exit status: 0 when memory in use did not grow after the first minute and every round gave the
// same results, 1 otherwise.
#include <malloc.h>
#include <unistd.h>

#include <atomic>
#include <barrier>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>
#include <utility>
#include <vector>

#include "calls.h"

namespace {

using Clock = std::chrono::steady_clock;
using Sums = std::pair<std::uint64_t, std::uint64_t>;

constexpr int thread_count = 4;

struct Memory {
  size_t in_use;    // of what malloc gave out
  size_t resident;  // of the process
};

Memory measure() {
  const struct mallinfo2 info = mallinfo2();
  std::ifstream statm("/proc/self/statm");
  size_t pages = 0, resident_pages = 0;
  statm >> pages >> resident_pages;
  return {info.uordblks + info.hblkhd, resident_pages * static_cast<size_t>(sysconf(_SC_PAGESIZE))};
}

// In each round every charset is taken once, by whichever thread comes first.
class Soak {
 public:
  explicit Soak(int minutes)
      : minutes_(minutes), expected_(static_cast<size_t>(charsets_.size())) {}

  bool run() {
    std::vector<std::thread> threads;
    threads.reserve(thread_count);
    for (int i = 0; i < thread_count; ++i) threads.emplace_back([this] { work(); });
    for (std::thread& thread : threads) thread.join();
    return !failed_;
  }

 private:
  void work() {
    while (!ended_) {
      for (int i = next_++; i < charsets_.size(); i = next_++) {
        const exercise::Results results = charsets_.exercise(i);
        const Sums sums(results.bytes.get(), results.text.get());
        Sums& known = expected_[static_cast<size_t>(i)];
        if (rounds_ == 0) known = sums;
        if (sums != known && !failed_.exchange(true)) {
          std::printf("%s: other results than in the first round\n", charsets_.get_name(i));
        }
      }
      end_of_round_.arrive_and_wait();
    }
  }

  // No other thread runs meanwhile.
  void close_round() noexcept {
    ++rounds_;
    next_ = 0;
    if (minutes_ == 0) ended_ = true;
    if (Clock::now() - start_ < std::chrono::minutes(minute_ + 1)) return;
    ++minute_;
    const Memory now = measure();
    std::printf("minute %3d: %6d rounds, %9zu bytes in use, %6zu KiB resident\n", minute_, rounds_,
                now.in_use, now.resident / 1024);
    if (minute_ == 1) first_ = now;
    if (now.in_use > first_.in_use + in_use_slack ||
        now.resident > first_.resident + resident_slack) {
      std::printf("memory grows\n");
      failed_ = true;
    }
    if (minute_ == minutes_) ended_ = true;
  }

  static constexpr size_t in_use_slack = 1024;
  static constexpr size_t resident_slack = 4 << 20;

  const int minutes_;
  exercise::Charsets charsets_;
  std::vector<Sums> expected_;
  const Clock::time_point start_ = Clock::now();
  Memory first_ = {};
  int minute_ = 0, rounds_ = 0;
  std::atomic<int> next_ = 0;
  std::atomic<bool> ended_ = false, failed_ = false;

  struct Closer {
    Soak* soak;
    void operator()() const noexcept { soak->close_round(); }
  };
  std::barrier<Closer> end_of_round_{thread_count, Closer{this}};
};

}  // namespace

int main(int argc, char** argv) {
  const int minutes = argc == 2 ? std::atoi(argv[1]) : -1;
  if (minutes < 0) {
    std::fprintf(stderr, "usage: soak MINUTES\n");
    return 2;
  }
  std::setvbuf(stdout, nullptr, _IONBF, 0);  // a buffer would be memory in use
  return Soak(minutes).run() ? 0 : 1;
}
