// The loops over UTF-8 and ISO-8859-1 that are worth vector code: as much of a job as the
// instructions are good for. Each returns how many bytes of the text it did, from the beginning on,
// none of a character that it did in part; its caller does the rest one by one. It reads nothing
// behind the text.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>

#include "text/bytes.h"
#include "text/unicode/ascii_set.h"

namespace text {

// Of texts shorter than this no kernel does anything.
constexpr size_t kernel_stretch = 32;

// How far behind the end of what they write kernels store, in elements.
constexpr size_t kernel_slack = 32;

struct Kernels {
  bool (*are_there)();  // whether the processor has the instructions

  size_t (*skip_ascii)(Bytes text);
  size_t (*skip_utf8)(Bytes text);  // well-formed

  // Copies what is in the set, and writes nothing behind it.
  size_t (*copy_run)(unsigned char* out, Bytes text, const AsciiSet& set);

  // Each moves out.
  size_t (*utf8_to_units)(char16_t*& out, Bytes text);  // of well-formed text up to U+FFFF
  size_t (*utf8_to_latin1)(unsigned char*& out, Bytes text);
  size_t (*latin1_to_utf8)(unsigned char*& out, Bytes text);

  // Each adds to count.
  size_t (*count_units)(size_t& count, Bytes utf8);  // of UTF-16, in well-formed text
  size_t (*count_high)(size_t& count, Bytes text);   // bytes outside ASCII
};

// The end of a text, which kernels leave, long enough for them by NULs behind it, one at least.
class LastStretch {
 public:
  static bool fits(Bytes end) { return !end.empty() && end.size() < 2 * kernel_stretch; }
  explicit LastStretch(Bytes end) : size_(end.size()) { std::copy(end.begin(), end.end(), bytes_); }

  Bytes in_stretches() const {
    return {bytes_, size_ < kernel_stretch ? kernel_stretch : 2 * kernel_stretch};
  }
  // For utf8_to_units(), which needs so much more to come to the end of it.
  static constexpr size_t units_ahead = 17;
  Bytes in_steps() const { return {bytes_, size_ + units_ahead}; }

 private:
  unsigned char bytes_[3 * kernel_stretch] = {};
  size_t size_;
};

// All that this build has, best first. The last do nothing, and are there on every processor.
std::span<const Kernels> get_all_kernels();
// The first that are there.
const Kernels& get_kernels();

}  // namespace text
