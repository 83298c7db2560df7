// The interface tests ask another libqorviks what was printed. It is not linked into every program.
#include <dlfcn.h>
#include <qorvii18n/i18n_catalog.h>
#include <qorvii18n/i18n_charset.h>
#include <qorvii18n/i18n_mime.h>

#include <utility>

#include "support/testing.h"

namespace {

template <class Symbol>
Symbol* find(const char* name) {
  return reinterpret_cast<Symbol*>(dlsym(RTLD_DEFAULT, name));
}

}  // namespace

std::string take_diagnostics() { return std::exchange(*find<std::string>("recorded"), {}); }

TEST(OtherServices, AreTheOnlyOnes) {
  EXPECT_EQ(dlopen(STAND_IN, RTLD_NOLOAD | RTLD_LAZY), nullptr);
  const int lookups = *find<int>("lookups");
  EXPECT_NE(i18n_charset_open("UTF-8"), nullptr);
  EXPECT_GT(*find<int>("lookups"), lookups);
  libqorvii18n_print_verid();
  EXPECT_EQ(take_diagnostics().substr(0, 15), "0: libqorvii18n");
}

TEST(OtherServices, LookUpTheMailCharsetOnceACall) {
  const int& lookups = *find<int>("lookups");
  const auto count = [&lookups](auto call) {
    take(i18n_mime_easy_encode_header_qp(""));  // makes the tables, where this is the first call
    const int before = lookups;
    take(call());
    return lookups - before;
  };
  // By the fast road, and by the exact one.
  EXPECT_EQ(count([] { return i18n_mime_encode("x", "UTF-8", "UTF-8", 2, nullptr, nullptr); }), 1);
  EXPECT_EQ(count([] { return i18n_mime_encode("x", "UTF-8", "UTF-7", 2, nullptr, nullptr); }), 1);
  EXPECT_EQ(count([] { return i18n_mime_encode_header("x", "UTF-8", "KOI8-R", 2); }), 1);
  EXPECT_EQ(count([] { return i18n_mime_easy_encode_header_b64("x"); }), 1);
  EXPECT_EQ(count([] { return i18n_mime_encode_qp("x", "UTF-8", "KOI8-R"); }), 0);
}
