// First use, in many threads at once and when ICU does not do its part, and last use, at the end of
// a process. Each test needs a process in which the library has not been used yet.
#include <qorvii18n/i18n_charset.h>
#include <qorvii18n/i18n_mail.h>
#include <qorvii18n/i18n_mime.h>
#include <qorviks.h>
#include <sys/wait.h>
#include <unicode/ucnv.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdio>
#include <cstring>
#include <functional>
#include <latch>
#include <stdexcept>
#include <thread>

#include "support/calls.h"
#include "support/testing.h"

namespace {

bool counting_fails;
int failing_alias = -1;
std::atomic<int> lookups;
std::function<void()> on_create, on_enter, on_open;  // a table, an entry, a converter

// What fails in there fails here.
void run_in_new_process(const std::function<void()>& test, void (*finish)(int) = _exit) {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    test();
    finish(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

std::string encode_all() {
  const char* text = "\x93\xfa";
  return take(i18n_mime_encode(text, "Shift_JIS", nullptr, 9, nullptr, nullptr)) +
         take(i18n_mime_encode_b64(text, "shift-jis", "UTF-8")) +
         take(i18n_mime_encode_header(text, "sjis", nullptr, 9)) +
         take(i18n_mime_encode_header_b64(text, "ms_kanji", "UTF-8"));
}
const char* const encoded =
    "=1B=24BF=7C=1B(B"
    "5pel"
    "=?UTF-8?Q?=E6=97=A5?="
    "=?UTF-8?B?5pel?=";

// A charset by tables of ICU's, a domain, a break iterator.
std::string make_mail() {
  const char* text = "\u00fc \uac00\uac01\uac02\uac03\uac04\uac05\uac06\uac07\uac08\uac09";
  const i18n_mail_address_t item = {text, 2, "a@k\u00f6ln.example"};
  return take(i18n_mail_addresses("To", &item, 1, "UTF-8", "gb18030", nullptr)) +
         take(i18n_mail_header("Subject", text, std::strlen(text), nullptr, nullptr, nullptr));
}
const char* const mail =
    "To: =?GB18030?B?qLk=?= <a@xn--kln-sna.example>Subject: "
    "=?UTF-8?B?w7wg6rCA6rCB6rCC6rCD6rCE6rCF6rCG6rCH6rCI6rCJ?=";

std::string find_charset(const char* name) {
  const char* charset = i18n_mime_get_body_to_charset_name(name);
  return charset != nullptr ? charset : "none";
}

}  // namespace

uint16_t ucnv_countAliases(const char* alias, UErrorCode* status) {
  if (counting_fails) *status = U_INTERNAL_PROGRAM_ERROR;
  return REAL(ucnv_countAliases)(alias, status);
}
const char* ucnv_getAlias(const char* alias, uint16_t n, UErrorCode* status) {
  if (n == failing_alias) *status = U_INTERNAL_PROGRAM_ERROR;
  return REAL(ucnv_getAlias)(alias, n, status);
}

UConverter* ucnv_open(const char* name, UErrorCode* status) {
  if (on_open) on_open();
  return REAL(ucnv_open)(name, status);
}

hash_str_t* hash_str_create(int size, int value_size, int flags) {
  if (on_create) on_create();
  return REAL(hash_str_create)(size, value_size, flags);
}
int hash_str_enter(hash_str_t* table, const char* key, uint64_t* scratch, void*** slot) {
  const int result = REAL(hash_str_enter)(table, key, scratch, slot);
  if (on_enter) on_enter();
  return result;
}
int hash_str_lookup(hash_str_t* table, const char* key, uint64_t* scratch, void*** slot) {
  ++lookups;
  return REAL(hash_str_lookup)(table, key, scratch, slot);
}

void use_at_once(std::string (*use)(), const char* expected) {
  for (int process = 0; process < 30; ++process) {
    run_in_new_process([=] {
      std::vector<int> differences(8);
      std::latch start(static_cast<std::ptrdiff_t>(differences.size()));
      std::vector<std::thread> threads;
      threads.reserve(differences.size());
      for (int& count : differences) {
        threads.emplace_back([=, &count, &start] {
          start.arrive_and_wait();
          for (int i = 0; i < 20; ++i) count += use() != expected;
        });
      }
      for (std::thread& thread : threads) thread.join();
      EXPECT_EQ(differences, std::vector<int>(8));
    });
  }
}

TEST(FirstUse, MayBeInManyThreadsAtOnce) {
  use_at_once(encode_all, encoded);
  use_at_once(make_mail, mail);
}

TEST(FirstUse, SaysOncePerTableThatThereAreNoAliases) {
  run_in_new_process([] {
    counting_fails = true;
    for (int call = 0; call < 2; ++call) EXPECT_EQ(find_charset("shift_jis"), "none");
    const std::string message = "6: Character set alias shift_jis is invalid";
    EXPECT_EQ(take_diagnostics(), message + "|" + message);
  });
}

TEST(FirstUse, LeavesOutAnAliasThatIcuCannotTell) {
  run_in_new_process([] {
    UErrorCode status = U_ZERO_ERROR;
    const std::string first = ucnv_getAlias("shift_jis", 0, &status);
    const std::string second = ucnv_getAlias("shift_jis", 1, &status);
    failing_alias = 0;
    EXPECT_EQ(find_charset(first.c_str()), "none");
    for (const std::string& name : {second, std::string("sjis")}) {
      EXPECT_EQ(find_charset(name.c_str()), "ISO-2022-JP") << name;
    }
    EXPECT_EQ(take_diagnostics(), "");
  });
}

TEST(NestedCall, SeesTheTablesOfMailCharsetsAsFarAsTheyAre) {
  run_in_new_process([] {
    int creations = 0, found = 0, entries = 0;
    on_create = [&] {
      lookups = 0;
      EXPECT_EQ(find_charset("sjis"), "none");
      EXPECT_EQ(lookups, creations++) << "in the first of two tables, once that is there";
      EXPECT_EQ(take(i18n_mime_encode_header("a", "sjis", "UTF-8", 0)), "=?UTF-8?B?YQ==?=");
    };
    on_enter = [&] {
      ++entries;
      found += find_charset("sjis") == "ISO-2022-JP";
    };
    EXPECT_EQ(encode_all(), encoded);
    EXPECT_EQ(creations, 2);
    EXPECT_TRUE(0 < found && found < entries) << found << " of " << entries;
  });
}

// The name of the mail charset is stored once the chooser has its converters.
TEST(NestedCall, SeesNoTargetBeforeThereIsAChooser) {
  run_in_new_process([] {
    char* target = nullptr;
    int opened = 0;
    on_open = [&] {
      ++opened;
      EXPECT_EQ(target, nullptr);
    };
    for (const char* to : {"no-such", "SCSU"}) {
      target = nullptr;
      opened = 0;
      take(i18n_mime_encode("a", "KOI8-R", to, 0, nullptr, &target));
      EXPECT_GT(opened, 1) << to;
      EXPECT_EQ(take(target), to);
    }
  });
}

TEST(NestedCall, MayThrowAndTheNextCallTriesAgain) {
  run_in_new_process([] {
    int entries = 0;
    on_enter = [&] {
      if (++entries == 3) throw std::runtime_error("a service");
    };
    EXPECT_THROW(find_charset("sjis"), std::runtime_error);
    EXPECT_EQ(encode_all(), encoded);
    EXPECT_THROW((entries = 0, i18n_charset_open_all()), std::runtime_error);
    i18n_charset_t** const all = i18n_charset_open_all();
    EXPECT_EQ(std::find(all, all + ucnv_countAvailable(), nullptr), all + ucnv_countAvailable());
  });
}

TEST(NestedCall, GetsTheListOfAllCharsetsAsFarAsItIs) {
  run_in_new_process([] {
    std::vector<i18n_charset_t**> lists;
    std::vector<int> filled;
    on_enter = [&] {
      lists.push_back(i18n_charset_open_all());
      filled.push_back(
          static_cast<int>(std::find(lists.back(), lists.back() + 50, nullptr) - lists.back()));
    };
    i18n_charset_t** const all = i18n_charset_open_all();
    EXPECT_EQ(lists, std::vector(lists.size(), all));
    EXPECT_TRUE(
        filled.front() == 0 && filled.back() == 50 && std::is_sorted(filled.begin(), filled.end()));
  });
}

// The libraries keep what they made until the process is gone.
TEST(LastUse, MayBeInAStaticDestructorAndInAThreadThatGoesOn) {
  struct AtExit {
    ~AtExit() {
      for (size_t i = 0; i < expected.size(); ++i) {
        if (get_calls()[i].run() != expected[i]) _exit(2);
      }
    }
    std::vector<std::string> expected;
  };
  const auto encode = [] {
    const std::string text = repeat("\u65e5\u672c", 4000);
    return take(i18n_mime_encode_qp(text.c_str(), "UTF-8", "ISO-2022-JP"));
  };
  for (int process = 0; process < 10; ++process) {
    run_in_new_process(
        [&] {
          static AtExit last;  // destroyed after whatever is made from here on
          for (const Call& call : get_calls()) last.expected.push_back(call.run());
          std::latch started(1);
          std::thread([&started, encode] {
            const std::string first = encode();
            started.count_down();
            while (encode() == first) continue;
            _exit(3);
          }).detach();
          started.wait();
        },
        std::exit);
  }
}

// As much as the system lets a thread have, where no sanitizer takes its part of it.
TEST(SmallStack, IsEnoughForEveryCall) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  constexpr size_t stack_size = size_t{1} << 18;
#else
  const size_t stack_size = PTHREAD_STACK_MIN;
#endif
  for (const Call& call : get_calls()) {
    run_in_new_process([&call, stack_size] {
      static std::string result;
      const auto run = [](void* argument) -> void* {
        result = static_cast<const Call*>(argument)->run();
        return nullptr;
      };
      pthread_attr_t attributes;
      pthread_attr_init(&attributes);
      ASSERT_EQ(pthread_attr_setstacksize(&attributes, stack_size), 0);
      pthread_t thread;
      ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<Call*>(&call)), 0);
      pthread_join(thread, nullptr);
      EXPECT_EQ(result, call.run()) << call.name;
    });
  }
}
