// What happens when memory runs out: the exception comes out, nothing leaks (the leak checker
// tells), and the library works afterwards.
#include <qorvii18n/i18n_iconv.h>
#include <qorvii18n/i18n_mime.h>

#include <cstdlib>
#include <functional>
#include <limits>
#include <new>
#include <utility>

#include "support/testing.h"

namespace {

constexpr int no_limit = std::numeric_limits<int>::max();
int allowance = no_limit;  // allocations before the one that fails

// What a call stores is the caller's to release, even when the call then fails.
struct Stored {
  ~Stored() { i18n_mime_free(text); }
  char* text = nullptr;
};

}  // namespace

// The library is linked so that its calls of malloc come here.
extern "C" void* __real_malloc(size_t size);
extern "C" void* __wrap_malloc(size_t size) {
  return allowance-- != 0 ? __real_malloc(size) : nullptr;
}

// The operators of this program serve the library, too.
[[gnu::noinline]] void* operator new(size_t size) {
  void* block = __wrap_malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, size_t) noexcept { std::free(block); }

// The first use of the tables is that of this program.
TEST(OutOfMemory, LeavesNoTableHalfFilled) {
  int failed_at = 0;
  for (bool failed = true; failed; ++failed_at) {
    allowance = failed_at;
    try {
      i18n_mime_get_body_to_charset_name("UTF-8");
      failed = allowance < 0;
    } catch (const std::bad_alloc&) {
    }
    allowance = no_limit;
  }
  EXPECT_GT(failed_at, 1);
  EXPECT_STREQ(i18n_mime_get_body_to_charset_name("sjis"), "ISO-2022-JP");
  EXPECT_STREQ(i18n_mime_get_header_to_charset_name("sjis"), "UTF-8");
}

TEST(OutOfMemory, ComesOutOfEveryCallAndLeavesTheLibraryUsable) {
  const std::string input = "Gr\u00f6\u00dfe " + std::string(2000, '=');
  const char* text = input.c_str();
  const int size = static_cast<int>(input.size());
  i18n_charset_t* utf8 = i18n_charset_open("UTF-8");
  i18n_charset_t* latin1 = i18n_charset_open("ISO-8859-1");
  i18n_mime_get_body_to_charset_name("UTF-8");
  const std::function<char*(char*&)> calls[] = {
      [&](char*&) { return i18n_mime_encode_qp(text, "UTF-8", "ISO-8859-1"); },
      [&](char*&) { return i18n_mime_encode_header_b64(text, "UTF-8", "ISO-8859-1"); },
      [&](char*& to) { return i18n_mime_encode(text, "UTF-8", "ISO-8859-1", 0.5, nullptr, &to); },
      [&](char*&) { return i18n_iconv_easy(utf8, text, size, latin1, nullptr, nullptr); },
      [&](char*& out) {
        size_t position, length = 0;
        i18n_iconv_easy_ex(utf8, text, input.size(), &position, latin1, &out, &length);
        out[length] = '\0';
        return std::exchange(out, nullptr);
      },
  };
  for (const auto& call : calls) {
    const auto run = [&call] {
      Stored stored;
      return take(call(stored.text));
    };
    const std::string expected = run();
    int failed_at = 0;
    for (bool failed = true; failed; ++failed_at) {
      allowance = failed_at;
      try {
        EXPECT_EQ(run(), expected);
        failed = allowance < 0;  // and was not needed
      } catch (const std::bad_alloc&) {
      }
      allowance = no_limit;
      EXPECT_EQ(run(), expected) << "after allocation " << failed_at << " failed";
    }
    EXPECT_GT(failed_at, 1);
  }
}
