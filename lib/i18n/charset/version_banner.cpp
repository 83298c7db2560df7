// The version banner.
#include "charset/version_banner.h"

#include <qorvii18n/i18n_catalog.h>
#include <qorvii18n/version.h>
#include <qorviks.h>

#include "build_time.h"

namespace {

// Calls print(arguments before the kind..., kind, format, index, arguments of the format...).
template <class Print, class... Leading>
void banner(Print print, Leading... leading) {
  constexpr int plain_kind = 0;
  constexpr int name_width = 33;
  print(leading..., plain_kind, "%-*s %s (%s) %s\n", IMSG_FORMAT_INDEX, name_width, "libqorvii18n",
        QORVII18N_VERSION, QORVII18N_BUILD_TIME, "64-bit");
}

}  // namespace

void libqorvii18n_print_verid() { banner(imsg_print); }

// Nothing in the library calls it: without the attribute, it would be dropped when the library is
// optimised as a whole.
[[gnu::used]] void i18n::sprint_verid(char* buffer) { banner(imsg_sprintf, buffer); }
