// Bodies: without conversion against independent encoders, with conversion against bare ICU.
#include <memory>

#include <qorvii18n/i18n_mime.h>

#include "families.h"
#include "icu.h"
#include "pairs.h"
#include "peers.h"
#include "texts.h"

namespace bench {

namespace {

constexpr size_t kib = 1024;

using Encode = decltype(&i18n_mime_encode_b64);
using Decode = std::string (*)(std::string_view);
using PeerEncode = PeerText (*)(std::string_view);

struct Kind {
  const char* name;
  Encode encode;
  Decode decode;
  PeerEncode peer;
};
constexpr Kind base64 = {"base64", i18n_mime_encode_b64, decode_base64, encode_base64_lines};
constexpr Kind quoted_printable = {"quoted-printable", i18n_mime_encode_qp, decode_quoted_printable,
                                   encode_quoted_printable};

std::string encode(const Kind& kind, const std::string& text, const char* from, const char* to) {
  char* result = kind.encode(text.c_str(), from, to);
  std::string copy = result;
  i18n_mime_free(result);
  return copy;
}

std::function<void()> call_library(const Kind& kind, std::string text, const char* from,
                                   const char* to) {
  return [&kind, text = std::move(text), from, to] {
    i18n_mime_free(kind.encode(text.c_str(), from, to));
  };
}

void add_plain(const Kind& kind, Language language, size_t size, double wanted) {
  const std::string work = std::string(kind.name) + " body, names equal, " + get_name(language);
  const std::string text = make_text(language, size);
  require(kind.decode(encode(kind, text, "UTF-8", "UTF-8")) == text, work);
  require(kind.decode(kind.peer(text).get()) == text, work + ", reference");
  register_row({work, size, wanted, call_library(kind, text, "UTF-8", "UTF-8"),
                [&kind, text] { kind.peer(text); }});
}

void add_converted(const Kind& kind, Language language, const char* from, const char* to,
                   double wanted) {
  constexpr size_t size = 64 * kib;
  const std::string work = std::string(kind.name) + " body, " + from + " to " + to;
  const std::string text = make_text_in(from, language, size);
  auto floor = std::make_shared<IcuFloor>(from, to, text.size());
  const std::string converted(floor->convert(text));
  require(kind.decode(encode(kind, text, from, to)) == converted, work);
  require(floor->convert_in_chunks(text) == converted, work + ", reference");
  register_row({work, text.size(), wanted, call_library(kind, text, from, to),
                [floor, text] { floor->convert_in_chunks(text); }});
}

}  // namespace

void add_body_rows() {
  add_plain(base64, Language::kEnglish, 64 * kib, 1.0);
  add_plain(base64, Language::kEnglish, 8 * kib * kib, 1.0);
  add_plain(quoted_printable, Language::kEnglish, 64 * kib, 0.40);
  add_plain(quoted_printable, Language::kGerman, 64 * kib, 0.50);
  add_plain(quoted_printable, Language::kJapanese, 64 * kib, 0.75);
  add_converted(base64, Language::kJapanese, "Shift_JIS", "ISO-2022-JP", 1.15);
  add_converted(quoted_printable, Language::kGerman, "UTF-8", "ISO-8859-1", 1.8);
  add_converted(base64, Language::kGerman, "ISO-8859-1", "UTF-8", 1.6);
}

}  // namespace bench
