// The version banner as text.
#pragma once

namespace i18n {

// Writes the line that libqorvii18n_print_verid() prints, NUL-terminated. 128 bytes are enough.
void sprint_verid(char* buffer);

}  // namespace i18n
