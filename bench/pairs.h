// Library against reference, in interleaved pairs.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Row {
  std::string work;
  size_t size;  // bytes of input
  double wanted;
  std::function<void()> library;
  std::function<void()> reference;
};

// One benchmark of Google Benchmark for the row, whose iterations are pairs: a slice of calls of
// one side, then a slice of the other. The ratio of the row is the median over the pairs, so what
// slows the machine for longer than a slice slows both.
void register_row(const Row& row);

// Seconds of one call: the mean over a twentieth of a second, or one call if that takes longer. Not
// the best time: the speed of a shared machine changes too fast for a long call to catch the best.
double time_call(const std::function<void()>& call);

double median(std::vector<double> values);

// Ends the program unless what it relies on holds: a time would mean nothing.
void require(bool agrees, const std::string& what);

}  // namespace bench
