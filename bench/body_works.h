// The bodies whose growth and peak of memory are measured.
#pragma once

#include <array>

#include <qorvii18n/i18n_mime.h>

namespace bench {

struct BodyWork {
  const char* name;
  decltype(&i18n_mime_encode_b64) encode;
  const char* from_charset;
  const char* to_charset;
};

inline constexpr std::array<BodyWork, 4> body_works = {{
    {"base64", i18n_mime_encode_b64, "UTF-8", "UTF-8"},
    {"q-p", i18n_mime_encode_qp, "UTF-8", "UTF-8"},
    {"base64 conv.", i18n_mime_encode_b64, "UTF-8", "ISO-8859-1"},
    {"q-p conv.", i18n_mime_encode_qp, "UTF-8", "ISO-8859-1"},
}};

}  // namespace bench
