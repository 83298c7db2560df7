// Headers, UTF-8 to UTF-8. GMime chooses between the encodings itself, so both are compared with
// whatever it makes of the text.
#include <qorvii18n/i18n_mime.h>

#include "families.h"
#include "pairs.h"
#include "peers.h"
#include "texts.h"

namespace bench {

namespace {

using Encode = decltype(&i18n_mime_encode_header_b64);

void add_header(const char* name, Encode encode, Language language, size_t size) {
  constexpr double wanted = 1.0;
  const std::string work = std::string(name) + " header, " + get_name(language);
  const std::string text = make_text(language, size, " ");
  char* result = encode(text.c_str(), "UTF-8", "UTF-8");
  require(decode_header(result) == text, work);
  i18n_mime_free(result);
  require(decode_header(encode_header(text.c_str()).get()) == "Subject: " + text,
          work + ", reference");
  register_row({work, text.size(), wanted,
                [=] { i18n_mime_free(encode(text.c_str(), "UTF-8", "UTF-8")); },
                [=] { encode_header(text.c_str()); }});
}

}  // namespace

void add_header_rows() {
  for (const Language language : {Language::kGerman, Language::kJapanese}) {
    for (const size_t size : {40, 200, 4096}) {
      add_header("B", i18n_mime_encode_header_b64, language, size);
      add_header("Q", i18n_mime_encode_header_qp, language, size);
    }
  }
}

}  // namespace bench
