// What happens when memory runs out: the exception comes out, or the status, nothing leaks (the
// leak checker tells), nothing is kept that is not whole, and the same call then works.
#include <qorvii18n/i18n_iconv.h>
#include <qorvii18n/i18n_text.h>
#include <sys/wait.h>
#include <unicode/uclean.h>
#include <unicode/ucnv.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <new>
#include <tuple>
#include <utility>

#include "support/calls.h"
#include "support/testing.h"

namespace {

constexpr int no_limit = std::numeric_limits<int>::max();
int allowance = no_limit;  // allocations before the one that fails
int in_a_row = 1;          // or so many

bool must_fail() { return allowance-- <= 0 && allowance >= -in_a_row; }

// ICU leaks a little when memory runs out while it opens a break iterator. Its blocks are never
// freed here, so that this is not reported; what the library leaves with ICU, other tests would
// show.
alignas(std::max_align_t) char arena[size_t{1} << 28];
size_t used = 0;
constexpr size_t unit = alignof(std::max_align_t);

void* icu_allocate(const void*, size_t size) {
  if (must_fail() || sizeof arena - used < size + 2 * unit) return nullptr;
  char* block = arena + used + unit;
  used += unit + (size + unit - 1) / unit * unit;
  std::memcpy(block - unit, &size, sizeof size);
  return block;
}
void* icu_reallocate(const void* context, void* block, size_t size) {
  const bool is_older = std::less<void*>()(block, arena) || std::less<void*>()(arena + used, block);
  if (block != nullptr && is_older) return std::realloc(block, size);
  void* larger = icu_allocate(context, size);
  if (larger == nullptr || block == nullptr) return larger;
  size_t old_size;
  std::memcpy(&old_size, static_cast<char*>(block) - unit, sizeof old_size);
  return std::memcpy(larger, block, std::min(size, old_size));
}
void icu_free(const void*, void*) {}

// Those of ICU count, too. It keeps failures to load its data for good, so it does that first.
void prepare_icu() {
  UErrorCode status = U_ZERO_ERROR;
  for (int32_t i = 0; i < ucnv_countAvailable(); ++i) {
    ucnv_close(ucnv_open(ucnv_getAvailableName(i), &status));
  }
  u_setMemoryFunctions(nullptr, icu_allocate, icu_reallocate, icu_free, &status);
  ASSERT_TRUE(U_SUCCESS(status));
}

const std::string threw = "threw";

// Lets one allocation fail.
std::string run(const Call& call, int allowed, bool* failed = nullptr) {
  std::string result = threw;
  allowance = allowed;
  try {
    result = call.run();
  } catch (const std::bad_alloc&) {
  }
  if (failed != nullptr) *failed = allowance < 0;
  allowance = no_limit;
  return result;
}

// What a function says in a process of its own.
std::string run_elsewhere(const std::function<std::string()>& function) {
  int ends[2];
  EXPECT_EQ(pipe(ends), 0);
  if (fork() == 0) {
    const std::string text = function();
    const bool is_written = write(ends[1], text.data(), text.size()) == ssize_t(text.size());
    _exit(is_written ? 0 : 1);
  }
  close(ends[1]);
  std::string text;
  char buffer[4096];
  for (ssize_t size; (size = read(ends[0], buffer, sizeof buffer)) > 0;) text.append(buffer, size);
  close(ends[0]);
  int status = -1;
  wait(&status);
  EXPECT_EQ(status, 0);
  return text;
}

}  // namespace

// The library is linked so that its calls of malloc come here.
extern "C" void* __real_malloc(size_t size);
extern "C" void* __wrap_malloc(size_t size) {
  return allowance-- != 0 ? __real_malloc(size) : nullptr;
}
extern "C" void* __real_realloc(void* block, size_t size);
extern "C" void* __wrap_realloc(void* block, size_t size) {
  return allowance-- != 0 ? __real_realloc(block, size) : nullptr;
}

// The operators of this program serve the library, too.
[[gnu::noinline]] void* operator new(size_t size) {
  void* block = __wrap_malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, size_t) noexcept { std::free(block); }

// Each in a process that has not used the library yet, so that what it makes for good is made then.
TEST(OutOfMemory, AtTheFirstUseLeavesNothingHalfMade) {
  prepare_icu();
  for (const Call& call : get_calls()) {
    const std::string expected = run_elsewhere([&] { return run(call, no_limit); });
    ASSERT_NE(expected, threw) << call.name;
    bool was_needed = true;
    // The first ones one by one; lists of all charsets take a thousand.
    for (int allowed = 0; was_needed; allowed += 1 + allowed / 16) {
      const std::string both = run_elsewhere([&] {
        bool failed;
        const std::string first = run(call, allowed, &failed);
        return (failed ? "failed\n" : "\n") + first + '\n' + run(call, no_limit);
      });
      was_needed = both.starts_with("failed");
      const std::string results = both.substr(both.find('\n') + 1);
      EXPECT_TRUE(results == threw + '\n' + expected || results == expected + '\n' + expected)
          << call.name << ", allocation " << allowed << ": " << results;
    }
  }
}

// Returns how often that threw.
int fail_each_allocation(const Call& call, const std::function<void()>& prepare) {
  prepare();
  const std::string expected = run(call, no_limit);
  int throws = 0;
  bool was_needed = true;
  for (int allowed = 0; was_needed; ++allowed) {
    prepare();
    const std::string first = run(call, allowed, &was_needed);
    EXPECT_TRUE(first == expected || first == threw) << call.name << ' ' << allowed << first;
    if (first != threw) prepare();
    EXPECT_EQ(run(call, no_limit), expected) << call.name << ", after allocation " << allowed;
    throws += first == threw;
  }
  return throws;
}

TEST(OutOfMemory, LeavesTheLibraryUsable) {
  prepare_icu();
  int throws = 0;
  for (const Call& call : get_calls()) throws += fail_each_allocation(call, [] {});
  EXPECT_GT(throws, 100);
}

// Handles hold what a failure left over.
TEST(OutOfMemory, LeavesWhatHandlesHold) {
  prepare_icu();
  const auto leave_half_a_character = [] { return convert("UTF-8", "\u20ac", "UTF-8", 1); };
  const auto leave_a_shift = [] { return convert("SCSU", "\x01", "US-ASCII"); };
  const std::pair<std::string (*)(), Call> cases[] = {
      {leave_half_a_character,
          {"to the same handle", [] { return convert("UTF-8", "ab\u20ac\u20ac", "UTF-8", 6); }}},
      {leave_half_a_character,
          {"allocated", [] { return convert("ISO-8859-1", "abcdefg", "UTF-8"); }}},
      {leave_half_a_character, {"reset", [] { return convert_easy("UTF-8", "abc", "UTF-8"); }}},
      {leave_a_shift, {"from", [] { return convert("SCSU", "a\xe9", "US-ASCII"); }}},
      {leave_a_shift, {"from, reset", [] { return convert_easy("SCSU", "a", "UTF-16"); }}},
  };
  for (const auto& [leave, call] : cases) {
    fail_each_allocation(call, [leave = leave] {
      convert_easy("UTF-8", "", "UTF-8");
      convert_easy("SCSU", "", "US-ASCII");
      leave();
    });
  }
}

namespace {

// A text in pieces, twice. When memory runs out, nothing has happened, and the call is repeated.
void convert_twice(i18n_text_converter_t* converter, const std::string& text, std::string& result) {
  i18n_text_status_t status;
  const auto repeat_call = [&](auto call) {
    status = call();
    while (status == I18N_TEXT_OUT_OF_MEMORY) status = call();
  };
  const auto append_error = [&] {
    i18n_text_error_t error;
    i18n_text_get_error(converter, &error);
    result += ' ' + std::to_string(status) + ' ' + std::to_string(error.position);
    i18n_text_reset(converter);
  };
  const char* input = text.data();
  do {
    const char* const piece_end = input + std::min<ptrdiff_t>(1500, &*text.end() - input);
    repeat_call([&] {
      char room[999];
      char* output = room;
      const char* const begin = input;
      const auto outcome = i18n_text_convert(
          converter, &input, piece_end, &output, room + sizeof room, piece_end == &*text.end());
      EXPECT_TRUE(outcome != I18N_TEXT_OUT_OF_MEMORY || (input == begin && output == room));
      result.append(room, output);
      return outcome;
    });
  } while (status == I18N_TEXT_FULL || (status == I18N_TEXT_OK && input != &*text.end()));
  append_error();
  const auto append = [](void* context, const char* bytes, size_t length) {
    if (context != nullptr) static_cast<std::string*>(context)->append(bytes, length);
    return 0;
  };
  const auto convert_to = [&](std::string* output) {
    return i18n_text_convert_to(converter, text.data(), text.size(), 1, append, output);
  };
  convert_to(nullptr);  // and given up, whatever became of it
  i18n_text_reset(converter);
  repeat_call([&] { return convert_to(&result); });
  append_error();
}

}  // namespace

TEST(OutOfMemory, TakesNothingOfATextAndTheCallMayBeRepeated) {
  prepare_icu();
  const std::string shifted = repeat("\x1b$B%F%9%H\x1b(B", 700);
  const std::tuple<const char*, const char*, std::string> cases[] = {
      {"ISO-2022-JP", "UTF-16", shifted + "\xff!"},
      {"UTF-8", "ISO-2022-JP", repeat("\u30c6 ", 3000) + "\u00fc"},
      {"UTF-8", "Shift_JIS", repeat("\ue000", 700)},
      {"UTF-8", "LMBCS-1", repeat("\u0436", 700)},
  };
  for (const auto& [from, to, text] : cases) {
    i18n_text_converter_t* const converter = i18n_text_open(from, to, nullptr);
    std::string expected;
    convert_twice(converter, text, expected);
    bool was_needed = true;
    for (int allowed = 0; was_needed; ++allowed) {
      std::string result;
      result.reserve(2 * expected.size());
      in_a_row = 1 + allowed % 2;
      allowance = allowed / 2;
      convert_twice(converter, text, result);
      was_needed = std::exchange(allowance, no_limit) < 0;
      EXPECT_EQ(result, expected) << to << ", allocation " << allowed / 2;
    }
    i18n_text_close(converter);
  }
}
