#include "charset/direct.h"
#include "core/bytes.h"
#include "text/charset/limits.h"
#include "text/unicode/latin1.h"

#include <unicode/ucnv.h>

namespace i18n {

namespace {

using Convert = decltype(&text::utf8_to_latin1);

bool goes(const i18n_charset_t& from, UConverterType from_type, const i18n_charset_t& to,
          UConverterType to_type) {
  return ucnv_getType(from.converter) == from_type && ucnv_getType(to.converter) == to_type;
}

CString convert(Convert function, Bytes text, size_t units, size_t bytes_per_unit, size_t* length) {
  // A unit becomes two bytes at most and has four or more: so many units leave room for the slack.
  constexpr size_t least_units = text::copy_slack / 2;
  if (units < least_units || units > text::most_bytes_at_once / bytes_per_unit - 1) return nullptr;
  CString output = allocate_c_string(bytes_per_unit * units + 1);
  auto* const begin = reinterpret_cast<unsigned char*>(output.get());
  unsigned char* const end = function(begin, text, text::get_kernels());
  if (end == nullptr) return nullptr;
  *end = '\0';
  *length = static_cast<size_t>(end - begin);
  return output;
}

}  // namespace

CString convert_directly(const i18n_charset_t& from, std::string_view input,
                         const i18n_charset_t& to, size_t bytes_per_unit, size_t* length) {
  if (from.has_unfinished_input || to.has_unfinished_output) return nullptr;
  const Bytes text(reinterpret_cast<const unsigned char*>(input.data()), input.size());
  if (goes(from, UCNV_UTF8, to, UCNV_LATIN_1)) {
    return convert(text::utf8_to_latin1, text, text::get_latin1_size(text), bytes_per_unit, length);
  }
  if (goes(from, UCNV_LATIN_1, to, UCNV_UTF8)) {
    return convert(text::latin1_to_utf8, text, text.size(), bytes_per_unit, length);
  }
  return nullptr;
}

}  // namespace i18n
