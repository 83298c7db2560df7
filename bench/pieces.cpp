// Texts in pieces of 64 KiB, as a program reads files: the library, ICU's converters and iconv(3).
#include <iconv.h>
#include <qorvii18n/i18n_text.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>

#include "bench.h"

namespace bench {

namespace {

constexpr size_t piece_size = 64 * kib;

// Each piece from where the last one was left, and room for all of the result.
template <class Convert>
Output convert_pieces(std::string& room, const std::string& text, Convert convert) {
  room.resize(3 * text.size() + kib);
  const char* input = text.data();
  const char* const end = input + text.size();
  char* output = room.data();
  while (input != end) {
    const char* const piece_end = input + std::min<size_t>(end - input, piece_size);
    convert(input, piece_end, output, room.data() + room.size(), piece_end == end);
  }
  constexpr auto keep_buffer = [](void*) {};
  return {{room.data(), keep_buffer}, static_cast<size_t>(output - room.data())};
}

Function library(const char* from, const char* to) {
  const std::shared_ptr<i18n_text_converter_t> converter(i18n_text_open(from, to, nullptr),
                                                         i18n_text_close);
  return [converter, room = std::make_shared<std::string>()](const std::string& text) {
    i18n_text_reset(converter.get());
    return convert_pieces(*room, text,
                          [&](auto& in, auto* in_end, auto& out, auto* end, bool last) {
                            i18n_text_convert(converter.get(), &in, in_end, &out, end, last);
                          });
  };
}

Function icu(const char* from, const char* to) {
  UErrorCode status = U_ZERO_ERROR;
  const std::shared_ptr<UConverter> source(ucnv_open(from, &status), ucnv_close);
  const std::shared_ptr<UConverter> target(ucnv_open(to, &status), ucnv_close);
  return [source, target, room = std::make_shared<std::string>()](const std::string& text) {
    char16_t units[8192];
    char16_t* unit = units;
    char16_t* unit_end = units;
    ucnv_reset(source.get());
    ucnv_reset(target.get());
    return convert_pieces(
        *room, text, [&](auto& in, auto* in_end, auto& out, auto* end, bool last) {
          UErrorCode error = U_ZERO_ERROR;
          ucnv_convertEx(target.get(), source.get(), &out, end, &in, in_end, units, &unit,
                         &unit_end, std::end(units), false, last, &error);
        });
  };
}

Function c_library(const char* from, const char* to) {
  const std::shared_ptr<void> handle(iconv_open(to, from), iconv_close);
  return [handle, room = std::make_shared<std::string>()](const std::string& text) {
    iconv(handle.get(), nullptr, nullptr, nullptr, nullptr);
    return convert_pieces(
        *room, text, [&](auto& in, auto* in_end, auto& out, auto* end, bool last) {
          char* input = const_cast<char*>(in);
          auto size = static_cast<size_t>(in_end - in), space = static_cast<size_t>(end - out);
          iconv(handle.get(), &input, &size, &out, &space);
          if (last) iconv(handle.get(), nullptr, nullptr, &out, &space);
          in = input;
        });
  };
}

std::string keep(std::string_view output) { return std::string(output); }

}  // namespace

const Work pieces_beside_icu = {
    "i18n_text_convert, ucnv_convertEx", "\n", library, keep, icu, keep};
const Work pieces_beside_iconv = {
    "i18n_text_convert, iconv(3)", "\n", library, keep, c_library, keep};

}  // namespace bench
