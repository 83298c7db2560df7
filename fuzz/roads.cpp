// Both roads of the MIME functions: of what the fast one takes, the exact one writes the same
// bytes, and it has nothing to report. What the functions for C give is the exact one's in any
// case.
#include "support/roads.h"

#include <utility>

#include "fuzz.h"

namespace {

bool is_silent() { return fuzz::messages.empty() && fuzz::failed_checks == 0; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  const char* from = input.charset(true);
  const char* to = input.charset(true);
  const Road& road = roads[input.number(4)];
  const std::string whole = input.text(from, to, 256);
  const std::string text = whole.c_str();  // up to the first NUL

  const i18n::CString fast = fast::encode({road.use, road.encoding, from, to}, text);
  fuzz::check(is_silent(), "the fast road is silent");
  const i18n::CString exact(road.encode_exactly(text.c_str(), from, to));
  const std::string_view mail = exact.get();
  fuzz::check(!fast || is_silent(), "the exact road is silent, too");
  fuzz::check(!fast || mail == fast.get(), "both roads give the same");
  const auto messages = std::exchange(fuzz::messages, {});
  const int failed_checks = std::exchange(fuzz::failed_checks, 0);
  const i18n::CString result(road.encode(text.c_str(), from, to));
  fuzz::check(
      mail == result.get() && messages == fuzz::messages && failed_checks == fuzz::failed_checks,
      "the function for C gives what the exact road gives");
  return 0;
}
