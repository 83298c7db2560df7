// What happens when memory runs out: the exception comes out, nothing leaks (the leak checker
// tells), and the library works afterwards.
#include <gtest/gtest.h>
#include <qorvii18n/i18n_iconv.h>
#include <qorvii18n/i18n_mime.h>

#include <cstdlib>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <string>

namespace {

constexpr int never = std::numeric_limits<int>::max();
int allocations_left = never;

bool fails() { return allocations_left != never && allocations_left-- <= 0; }

}  // namespace

// The library is linked so that its calls of malloc come here.
extern "C" void* __real_malloc(size_t size);
extern "C" void* __wrap_malloc(size_t size) { return fails() ? nullptr : __real_malloc(size); }

// The operators of this program serve the library, too.
[[gnu::noinline]] void* operator new(size_t size) {
  void* block = __wrap_malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, size_t) noexcept { std::free(block); }

namespace {

using Owned = std::unique_ptr<char, void (*)(void*)>;

std::string take(char* text) {
  const Owned owned(text, i18n_mime_free);
  return text;
}

TEST(OutOfMemory, ComesOutOfEveryCallAndLeavesTheLibraryUsable) {
  const std::string text =
      "Gr\xc3\xb6\xc3\x9f"
      "e " +
      std::string(400, '=');
  i18n_charset_t* utf8 = i18n_charset_open("UTF-8");
  i18n_charset_t* latin1 = i18n_charset_open("ISO-8859-1");
  i18n_mime_get_body_to_charset_name("UTF-8");
  const std::function<std::string()> calls[] = {
      [&] { return take(i18n_mime_encode_qp(text.c_str(), "UTF-8", "ISO-8859-1")); },
      [&] { return take(i18n_mime_encode_header_b64(text.c_str(), "UTF-8", "ISO-8859-1")); },
      [&] {
        char* target = nullptr;
        Owned owned_target(nullptr, i18n_mime_free);
        char* out = nullptr;
        try {
          out = i18n_mime_encode(text.c_str(), "UTF-8", "ISO-8859-1", 0.5, nullptr, &target);
        } catch (const std::bad_alloc&) {
          i18n_mime_free(target);  // stored before the encoding
          throw;
        }
        owned_target.reset(target);
        return take(out) + target;
      },
      [&] {
        return take(i18n_iconv_easy(utf8, text.data(), static_cast<int>(text.size()), latin1,
                                    nullptr, nullptr));
      },
      [&] {
        char* out = nullptr;
        size_t position, length = 0;
        i18n_iconv_easy_ex(utf8, text.data(), text.size(), &position, latin1, &out, &length);
        const Owned owned(out, i18n_iconv_free);
        return std::string(out, length);
      },
  };
  for (const auto& call : calls) {
    const std::string expected = call();
    int failed_at = 0;
    for (bool failed = true; failed; ++failed_at) {
      allocations_left = failed_at;
      try {
        const std::string result = call();
        failed = allocations_left < 0;  // and was not needed
        allocations_left = never;
        EXPECT_EQ(result, expected);
      } catch (const std::bad_alloc&) {
        allocations_left = never;
        EXPECT_EQ(call(), expected) << "after allocation " << failed_at << " failed";
      }
    }
    EXPECT_GT(failed_at, 1);
  }
}

}  // namespace
