// The interface tests ask another libqorviks what was printed. It is not linked into every program.
#include <dlfcn.h>
#include <qorvii18n/i18n_catalog.h>
#include <qorvii18n/i18n_charset.h>

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
