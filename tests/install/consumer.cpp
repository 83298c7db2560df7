// A C++17 program that works with the exported classes and puts its own imsg_print() in the place
// of the kernel services'.
#include <qorvii18n/i18n_catalog.h>
#include <qorvii18n/i18n_iconv.h>
#include <qorvii18n/version.h>
#include <qorviks.h>

#include <iostream>
#include <qorvii18n/i18n.hpp>
#include <qorvii18n/i18n_mime.hpp>
#include <string_view>

static_assert(std::string_view(QORVII18N_VERSION) == PACKAGE_VERSION);

static int printed = 0;

int imsg_print(int, const void*, int, ...) { return ++printed; }

int main() {
  i18n_mime::QPBodyEncodingTable body_table;
  const i18n_mime::HeaderLineCycle words("UTF-8", I18N_MIME_B64);
  const i18n_mime::B64BodyEncoder encoder("UTF-8");
  const i18n_mime::GenericEncoder& generic = encoder;
  i18n::LineCycle copy(8, "abc", "d", "e");
  copy = words;

  libqorvii18n_print_verid();
  const bool right = body_table.get_number_qp_encoded_bytes("a=\xFC") == 2 && copy.is_legal() &&
                     std::string(get_encoding_str(generic.get_encoding_type())) == "Base64" &&
                     i18n::open_ucnv_converter("no such charset") == nullptr && printed == 2;
  std::cout << copy.get_num_bytes_avail() << " bytes a word" << (right ? "\n" : ": wrong\n");
  return right ? 0 : 1;
}
