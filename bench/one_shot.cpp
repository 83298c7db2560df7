// One-shot conversions, with a buffer that the library allocates, against bare ICU with open
// converters and buffers that are there already.
#include <memory>

#include <qorvii18n/i18n_iconv.h>

#include "families.h"
#include "icu.h"
#include "pairs.h"
#include "texts.h"

namespace bench {

namespace {

struct Buffer {
  char* bytes;
  size_t size;
};
using Convert = Buffer (*)(const i18n_charset_t* from, const std::string& text,
                           const i18n_charset_t* to);

Buffer convert_easy(const i18n_charset_t* from, const std::string& text, const i18n_charset_t* to) {
  int64_t size = 0;
  char* bytes =
      i18n_iconv_easy(from, text.data(), static_cast<int>(text.size()), to, nullptr, &size);
  return {bytes, static_cast<size_t>(size)};
}

Buffer convert_easy_ex(const i18n_charset_t* from, const std::string& text,
                       const i18n_charset_t* to) {
  Buffer result{};
  size_t error_position;
  i18n_iconv_easy_ex(from, text.data(), text.size(), &error_position, to, &result.bytes,
                     &result.size);
  return result;
}

using Floor = std::string_view (IcuFloor::*)(std::string_view);

struct Kind {
  const char* name;
  Convert convert;
  Floor floor;
};
constexpr Kind easy = {"i18n_iconv_easy", convert_easy, &IcuFloor::convert};
constexpr Kind easy_ex = {"i18n_iconv_easy_ex", convert_easy_ex, &IcuFloor::convert_with_offsets};

void add_conversion(const Kind& kind, const char* from, const char* to, size_t size,
                    double wanted) {
  const std::string work = std::string(kind.name) + ", " + from + " to " + to;
  const std::string text = make_text_in(from, Language::kGerman, size);
  auto floor = std::make_shared<IcuFloor>(from, to, text.size());
  const std::string converted(floor->convert(text));
  const i18n_charset_t* source = i18n_charset_open(from);
  const i18n_charset_t* target = i18n_charset_open(to);
  const Buffer result = kind.convert(source, text, target);
  require(std::string_view(result.bytes, result.size) == converted, work);
  i18n_iconv_free(result.bytes);
  require(((*floor).*kind.floor)(text) == converted, work + ", reference");
  register_row({work, text.size(), wanted,
                [=] { i18n_iconv_free(kind.convert(source, text, target).bytes); },
                [=] { ((*floor).*kind.floor)(text); }});
}

void add_both_directions(const Kind& kind, size_t size, double wanted) {
  add_conversion(kind, "UTF-8", "ISO-8859-1", size, wanted);
  add_conversion(kind, "ISO-8859-1", "UTF-8", size, wanted);
}

}  // namespace

void add_one_shot_rows() {
  constexpr size_t small = 64;
  constexpr size_t large = size_t{64} << 10;
  add_both_directions(easy, small, 1.5);
  add_both_directions(easy, large, 1.15);
  add_both_directions(easy_ex, small, 1.8);
  add_both_directions(easy_ex, large, 1.2);
}

}  // namespace bench
