// The interface tests ask another libqorviks what was printed. It is not linked into every program.
#include <dlfcn.h>
#include <qorvii18n/i18n_catalog.h>
#include <qorvii18n/i18n_charset.h>

#include "support/testing.h"

namespace {

template <class Function>
Function* find(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, name));
}

}  // namespace

std::string take_diagnostics() { return find<const char*()>("take_other_diagnostics")(); }

TEST(OtherServices, AreTheOnlyOnes) {
  EXPECT_EQ(dlopen(STAND_IN, RTLD_NOLOAD | RTLD_LAZY), nullptr);
  const int lookups = find<int()>("count_other_lookups")();
  EXPECT_NE(i18n_charset_open("UTF-8"), nullptr);
  EXPECT_GT(find<int()>("count_other_lookups")(), lookups);
  libqorvii18n_print_verid();
  EXPECT_EQ(take_diagnostics().substr(0, 15), "0: libqorvii18n");
}
