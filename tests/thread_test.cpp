// The use that several threads are allowed: after one first call, all may encode at once.
#include <qorvii18n/i18n_mime.h>

#include <thread>

#include "support/testing.h"

namespace {

std::string encode_all() {
  const char* text =
      "Gr\xc3\xbc\xc3\x9f"
      "e = 1\r\n";
  return take(i18n_mime_encode(text, "UTF-8", "ISO-8859-1", 0.5, nullptr, nullptr)) +
         take(i18n_mime_encode_b64(text, "UTF-8", "UTF-8")) +
         take(i18n_mime_encode_header(text, "UTF-8", "UTF-8", 0.5)) +
         take(i18n_mime_encode_header_b64(text, "UTF-8", "ISO-8859-15")) +
         (i18n_mime_get_header_to_charset_name("Shift_JIS") != nullptr ? "found" : "");
}

TEST(Threads, EncodeAtOnceAfterTheFirstCall) {
  i18n_mime_get_body_to_charset_name("UTF-8");
  const std::string expected = encode_all();
  std::vector<int> differences(4);
  std::vector<std::thread> threads;
  threads.reserve(differences.size());
  for (int& count : differences) {
    threads.emplace_back([&count, &expected] {
      for (int i = 0; i < 200; ++i) count += encode_all() != expected;
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const int count : differences) EXPECT_EQ(count, 0);
}

}  // namespace
