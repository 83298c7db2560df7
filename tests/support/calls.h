// Every exported function, called in a way that takes it through its work.
#pragma once

#include <span>
#include <string>
#include <string_view>

struct Call {
  const char* name;
  // All that comes out of the call, as text. Throws std::bad_alloc when memory runs out, whatever
  // the function's way is to say so.
  std::string (*run)();
};

// In an order in which no call needs an earlier one. The texts are constants: this can be called
// before main() and after it.
std::span<const Call> get_calls();

// One-shot conversions, and all that comes out of them. A capacity of 0 has the output allocated.
std::string convert_easy(const char* from, std::string_view text, const char* to);
std::string convert(const char* from, std::string_view text, const char* to, size_t capacity = 0);
