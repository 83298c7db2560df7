// What happens when memory runs out: the exception comes out, or the status, nothing leaks (the
// leak checker tells), and the library works afterwards.
#include <qorvii18n/i18n_iconv.h>
#include <qorvii18n/i18n_mail.h>
#include <qorvii18n/i18n_mime.h>
#include <unicode/uclean.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
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

// Runs an action with its first allocation failing, then with its second, and so on until one is
// not needed any more.
template <class Action, class Check>
void fail_each_allocation(Action action, Check check_afterwards) {
  int failed_at = 0;
  for (bool failed = true; failed; ++failed_at) {
    SCOPED_TRACE("allocation " + std::to_string(failed_at) + " failed");
    allowance = failed_at;
    try {
      action();
      failed = allowance < 0;
    } catch (const std::bad_alloc&) {
    }
    allowance = no_limit;
    check_afterwards();
  }
  EXPECT_GT(failed_at, 1);
}

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
  fail_each_allocation([] { i18n_mime_get_body_to_charset_name("UTF-8"); }, [] {});
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
    const auto check = [&] { EXPECT_EQ(run(), expected); };
    fail_each_allocation(check, check);
  }
}

namespace {

// ICU leaks a little when memory runs out while it opens a break iterator. Its blocks are never
// freed here, so that this is not reported; what the library leaves with ICU, other tests would
// show.
alignas(std::max_align_t) char arena[size_t{1} << 28];
size_t used = 0;
constexpr size_t unit = alignof(std::max_align_t);

void* icu_allocate(const void*, size_t size) {
  if (allowance-- == 0 || sizeof arena - used < size + 2 * unit) return nullptr;
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

// From then on, in this process.
void let_icu_fail_too() {
  UErrorCode status = U_ZERO_ERROR;
  u_setMemoryFunctions(nullptr, icu_allocate, icu_reallocate, icu_free, &status);
  ASSERT_TRUE(U_SUCCESS(status));
}

}  // namespace

TEST(OutOfMemory, IsAStatusOfMailsAndLeavesTheLibraryUsable) {
  let_icu_fail_too();
  const std::string mixed = "a \u65e5\u672c\u8a9e \uac00\uac01 " + std::string(300, '=') + "\u20ac";
  const std::string latin = "\xfc.,\x80 " + std::string(100, 'x');
  const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466\U0001F468";
  const i18n_mail_address_t items[] = {
      {latin.data(), latin.size(), "a@b"}, {"a", 1, "j@k\u00f6ln.example"}};
  using Call = std::function<char*(i18n_mail_error_t*)>;
  const Call calls[] = {
      [&](auto* error) {
        return i18n_mail_header("Subject", mixed.data(), mixed.size(), "UTF-8", "gb18030", error);
      },
      [&](auto* error) {
        return i18n_mail_header("Subject", family.data(), family.size(), nullptr, nullptr, error);
      },
      [&](auto* error) {
        return i18n_mail_addresses("To", items, 2, "windows-1252", "ISO-8859-15", error);
      },
      [&](auto* error) {
        return i18n_mail_text(
            "plain", latin.data(), latin.size(), "cp1252", "ISO-2022-JP-2", error);
      },
      [&](auto* error) { return i18n_mail_data("a/b", mixed.data(), mixed.size(), error); },
  };
  for (const Call& call : calls) {
    bool failed = false;  // an allocation, of the last run
    const auto run = [&](int allocations) {
      i18n_mail_error_t error;
      allowance = allocations;
      char* result = call(&error);
      failed = std::exchange(allowance, no_limit) < 0;
      EXPECT_EQ(error.status, result == nullptr ? I18N_MAIL_OUT_OF_MEMORY : I18N_MAIL_OK);
      return result != nullptr ? take(result) : "";
    };
    // What ICU sets up once in a process stays as it is when that fails, so it comes first.
    const std::string expected = run(no_limit);
    int failures = 0, allocations = 0;
    for (failed = true; failed && allocations < 1000; ++allocations) {
      const std::string made = run(allocations);
      failures += made.empty();
      // ICU can do without some of its memory.
      EXPECT_TRUE(made.empty() ? failed : made == expected) << "allocation " << allocations;
      const bool was_needed = failed;
      EXPECT_EQ(run(no_limit), expected) << "after allocation " << allocations << " failed";
      failed = was_needed;
    }
    EXPECT_GT(failures, 2);
    EXPECT_FALSE(failed);
  }
}

// ICU then opens no converter, which is a failure like any other.
TEST(OutOfMemory, InIcuIsAFailedConversion) {
  const std::string text = "Gr\u00f6\u00dfe";
  const auto run = [&text] {
    return take(i18n_mime_encode_qp(text.c_str(), "UTF-8", "ISO-8859-15"));
  };
  const std::string expected = run();
  let_icu_fail_too();
  const auto check_either = [&] {
    const std::string result = run();
    EXPECT_TRUE(result == expected || result == text) << result;
  };
  fail_each_allocation(check_either, [&] { EXPECT_EQ(run(), expected); });
}
