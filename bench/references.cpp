// The independent libraries that do the same work, and the way back from what is made.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <optional>
#include <vector>

#include <gmime/gmime.h>
#include <modp_b64.h>
#include <unicode/ucnv.h>

#include "bench.h"
#include "conversion/chunk_sizes.h"

namespace bench {

namespace {

char* allocate(size_t size) { return static_cast<char*>(std::malloc(size)); }

std::string decode(std::string_view encoded, GMimeContentEncoding encoding) {
  GMimeEncoding decoder;
  g_mime_encoding_init_decode(&decoder, encoding);
  std::string text(g_mime_encoding_outlen(&decoder, encoded.size()), '\0');
  text.resize(g_mime_encoding_flush(&decoder, encoded.data(), encoded.size(), text.data()));
  return text;
}

std::string take(char* text) {
  std::string copy = text;
  g_free(text);
  return copy;
}

struct ConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

Converter open_strict(const char* charset) {
  UErrorCode status = U_ZERO_ERROR;
  Converter converter(ucnv_open(charset, &status));
  ucnv_setFallback(converter.get(), false);
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &status);
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  require(U_SUCCESS(status), charset);
  return converter;
}

// Open converters for any number of calls.
struct Pair {
  Pair(const char* from_charset, const char* to_charset)
      : from(open_strict(from_charset)), to(open_strict(to_charset)) {}

  Converter from, to;
  std::vector<UChar> units;  // for those who do not make them in each call
  std::vector<char> bytes;
};

constexpr size_t most_bytes_per_unit = 8;  // a kanji between two escape sequences

std::string_view convert_in_two_calls(Pair& pair, std::string_view text) {
  pair.units.resize(std::max(pair.units.size(), text.size()));
  pair.bytes.resize(std::max(pair.bytes.size(), most_bytes_per_unit * text.size()));
  UErrorCode status = U_ZERO_ERROR;
  const int32_t units =
      ucnv_toUChars(pair.from.get(), pair.units.data(), static_cast<int32_t>(pair.units.size()),
                    text.data(), static_cast<int32_t>(text.size()), &status);
  const int32_t size =
      ucnv_fromUChars(pair.to.get(), pair.bytes.data(), static_cast<int32_t>(pair.bytes.size()),
                      pair.units.data(), units, &status);
  require(U_SUCCESS(status), "conversion by ICU");
  return {pair.bytes.data(), static_cast<size_t>(size)};
}

// The room that was made for the first text is there for all.
struct Buffers {
  explicit Buffers(size_t size) : units(size), bytes(most_bytes_per_unit * size) {}

  std::vector<UChar> units;
  std::vector<char> bytes;
};

std::string_view convert_in_two_steps(const Pair& pair, Buffers& buffers, std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const char* source = text.data();
  UChar* unit = buffers.units.data();
  ucnv_toUnicode(pair.from.get(), &unit, unit + buffers.units.size(), &source, source + text.size(),
                 nullptr, true, &status);
  const UChar* unit_source = buffers.units.data();
  char* byte = buffers.bytes.data();
  ucnv_fromUnicode(pair.to.get(), &byte, byte + buffers.bytes.size(), &unit_source, unit, nullptr,
                   true, &status);
  require(U_SUCCESS(status), "conversion by ICU in two steps");
  return {buffers.bytes.data(), byte};
}

std::string_view convert_through_pivot(const Pair& pair, Buffers& buffers, std::string_view text) {
  UChar units[4096];
  UChar* unit_source = units;
  UChar* unit_target = units;
  UErrorCode status = U_ZERO_ERROR;
  const char* source = text.data();
  char* byte = buffers.bytes.data();
  ucnv_convertEx(pair.to.get(), pair.from.get(), &byte, byte + buffers.bytes.size(), &source,
                 source + text.size(), units, &unit_source, &unit_target, std::end(units), true,
                 true, &status);
  require(U_SUCCESS(status), "ucnv_convertEx");
  return {buffers.bytes.data(), byte};
}

using Way = std::string_view (*)(const Pair& pair, Buffers& buffers, std::string_view text);

Output convert_by(Way way, const Pair& pair, Buffers& buffers, const std::string& text) {
  const std::string_view result = way(pair, buffers, text);
  constexpr auto keep_buffer = [](void*) {};
  return {{buffers.bytes.data(), keep_buffer}, result.size()};
}

Output convert_with_offsets(const Pair& pair, std::string_view text) {
  const size_t n = text.size();
  auto* const units = reinterpret_cast<UChar*>(allocate(2 * n * sizeof(UChar)));
  auto* const unit_offsets = reinterpret_cast<int32_t*>(allocate(2 * n * sizeof(int32_t)));
  UErrorCode status = U_ZERO_ERROR;
  const char* source = text.data();
  UChar* unit = units;
  ucnv_toUnicode(pair.from.get(), &unit, units + 2 * n, &source, source + n, unit_offsets, true,
                 &status);
  const size_t capacity = 7 * static_cast<size_t>(unit - units) * sizeof(UChar) + 1;
  char* const bytes = allocate(capacity);
  auto* const byte_offsets = reinterpret_cast<int32_t*>(allocate(capacity * sizeof(int32_t)));
  const UChar* unit_source = units;
  char* byte = bytes;
  ucnv_fromUnicode(pair.to.get(), &byte, bytes + capacity, &unit_source, unit, byte_offsets, true,
                   &status);
  require(U_SUCCESS(status), "conversion by ICU with offsets");
  std::free(units);
  std::free(unit_offsets);
  std::free(byte_offsets);
  return {{bytes, std::free}, static_cast<size_t>(byte - bytes)};
}

Output convert_in_chunks(const Pair& pair, std::string_view text) {
  constexpr size_t chunk_bytes = i18n::chunk_bytes;
  constexpr size_t chunk_units = i18n::get_unit_chunk(chunk_bytes);
  UChar units[chunk_units];
  char bytes[chunk_bytes];
  int32_t offsets[chunk_bytes];
  const size_t capacity = 2 * text.size() + chunk_bytes;
  Output result{{allocate(capacity), std::free}, 0};
  const char* source = text.data();
  const char* const source_end = text.data() + text.size();
  UErrorCode read_status;
  do {
    read_status = U_ZERO_ERROR;
    UChar* unit = units;
    ucnv_toUnicode(pair.from.get(), &unit, units + chunk_units, &source, source_end, offsets, true,
                   &read_status);
    const UChar* unit_source = units;
    UErrorCode write_status;
    do {
      write_status = U_ZERO_ERROR;
      char* byte = bytes;
      ucnv_fromUnicode(pair.to.get(), &byte, bytes + chunk_bytes, &unit_source, unit, offsets,
                       static_cast<UBool>(read_status == U_ZERO_ERROR), &write_status);
      const auto written = static_cast<size_t>(byte - bytes);
      require(written <= capacity - result.size, "room for chunks");
      std::memcpy(result.bytes.get() + result.size, bytes, written);
      result.size += written;
    } while (write_status == U_BUFFER_OVERFLOW_ERROR);
    require(U_SUCCESS(write_status), "conversion by ICU in chunks");
  } while (read_status == U_BUFFER_OVERFLOW_ERROR);
  require(U_SUCCESS(read_status), "conversion by ICU in chunks");
  return result;
}

}  // namespace

Output encode_base64_lines(const std::string& text) {
  constexpr size_t line_bytes = 57;
  constexpr size_t line_break_size = 2;
  const size_t lines = text.size() / line_bytes + 1;
  char* const result = allocate(modp_b64_encode_len(text.size()) + lines * line_break_size);
  char* out = result;
  std::string_view rest = text;
  while (rest.size() > line_bytes) {
    out += modp_b64_encode(out, rest.data(), line_bytes);
    *out++ = '\r';
    *out++ = '\n';
    rest.remove_prefix(line_bytes);
  }
  modp_b64_encode(out, rest.data(), rest.size());
  return {{result, std::free}};
}

Output encode_quoted_printable(const std::string& text) {
  GMimeEncoding encoder;
  g_mime_encoding_init_encode(&encoder, GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
  char* const result = allocate(g_mime_encoding_outlen(&encoder, text.size()) + 1);
  result[g_mime_encoding_flush(&encoder, text.data(), text.size(), result)] = '\0';
  return {{result, std::free}};
}

// GMime folds whole fields only.
Output encode_header(const std::string& text) {
  char* encoded = g_mime_utils_header_encode_text(nullptr, text.c_str(), "UTF-8");
  char* field = g_strconcat("Subject: ", encoded, nullptr);
  Output folded{{g_mime_utils_unstructured_header_fold(nullptr, nullptr, field), g_free}};
  g_free(field);
  g_free(encoded);
  return folded;
}

// As a program sends a mail: the part itself chooses, for a transport of seven bits.
Output encode_text_part(const std::string& text) {
  GMimePart* part = g_mime_part_new_with_type("text", "plain");
  g_mime_object_set_content_type_parameter(GMIME_OBJECT(part), "charset", "UTF-8");
  GMimeStream* source = g_mime_stream_mem_new_with_buffer(text.data(), text.size());
  GMimeDataWrapper* content =
      g_mime_data_wrapper_new_with_stream(source, GMIME_CONTENT_ENCODING_DEFAULT);
  g_mime_part_set_content(part, content);
  g_mime_object_encode(GMIME_OBJECT(part), GMIME_ENCODING_CONSTRAINT_7BIT);
  GMimeStream* stream = g_mime_stream_mem_new();
  g_mime_object_write_to_stream(GMIME_OBJECT(part), nullptr, stream);
  const GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream));
  char* const result = allocate(bytes->len);
  std::memcpy(result, bytes->data, bytes->len);
  Output output{{result, std::free}, bytes->len};
  for (void* object : {static_cast<void*>(stream), static_cast<void*>(content),
                       static_cast<void*>(source), static_cast<void*>(part)}) {
    g_object_unref(object);
  }
  return output;
}

Function icu_in_chunks(const char* from, const char* to) {
  return [pair = std::make_shared<Pair>(from, to)](const std::string& text) {
    return convert_in_chunks(*pair, text);
  };
}

Function icu_in_two_calls(const char* from, const char* to) {
  return [pair = std::make_shared<Pair>(from, to)](const std::string& text) -> Output {
    const std::string_view result = convert_in_two_calls(*pair, text);
    constexpr auto keep_buffer = [](void*) {};
    return {{pair->bytes.data(), keep_buffer}, result.size()};
  };
}

Function icu_with_offsets(const char* from, const char* to) {
  return [pair = std::make_shared<Pair>(from, to)](const std::string& text) {
    return convert_with_offsets(*pair, text);
  };
}

Function icu_at_its_best(const char* from, const char* to) {
  struct State {
    Pair pair;
    std::optional<Buffers> buffers;
    Way way = convert_in_two_steps;
  };
  const auto state = std::make_shared<State>(State{{from, to}, {}});
  return [state](const std::string& text) {
    if (!state->buffers) {
      state->buffers.emplace(text.size());
      const auto run_by = [&](Way way) -> Side {
        const auto call = [state, way](const std::string& same) {
          return convert_by(way, state->pair, *state->buffers, same);
        };
        return [call, &text](size_t calls) { return run_calls(call, text, calls); };
      };
      const Comparison both = compare(run_by(convert_in_two_steps), run_by(convert_through_pivot));
      if (both.ratio > 1) state->way = convert_through_pivot;
    }
    return convert_by(state->way, state->pair, *state->buffers, text);
  };
}

std::string convert(const char* from, const char* to, std::string_view text) {
  Pair pair(from, to);
  return std::string(convert_in_two_calls(pair, text));
}

std::string decode_base64(std::string_view output) {
  return decode(output, GMIME_CONTENT_ENCODING_BASE64);
}

std::string decode_quoted_printable(std::string_view output) {
  return decode(output, GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
}

std::string decode_part(std::string_view output) {
  const size_t end = std::min(output.find("\n\n"), output.find("\r\n\r\n"));
  const std::string_view head = output.substr(0, end);
  const std::string_view body = output.substr(output.find_first_not_of("\r\n", end));
  return head.find("quoted-printable") != head.npos ? decode_quoted_printable(body)
                                                    : decode_base64(body);
}

// Word by word: GMime's decoder takes neighbours for one base64 text, which padding would end.
std::string decode_header(std::string_view output) {
  const std::string unfolded = take(g_mime_utils_header_unfold(std::string(output).c_str()));
  std::string_view rest = unfolded;
  constexpr std::string_view name = "Subject: ";
  if (rest.starts_with(name)) rest.remove_prefix(name.size());
  std::string text;
  for (bool after_word = false; !rest.empty(); after_word = true) {
    const size_t begin = std::min(rest.find("=?"), rest.size());
    const std::string_view gap = rest.substr(0, begin);
    const bool is_separator = after_word && begin != rest.size();
    if (!is_separator || gap.find_first_not_of(" \t") != gap.npos) text += gap;
    rest.remove_prefix(begin);
    if (rest.empty()) break;
    const size_t content = rest.find('?', rest.find('?', 2) + 1) + 1;
    const size_t end = rest.find("?=", content) + 2;
    text +=
        take(g_mime_utils_header_decode_text(nullptr, std::string(rest.substr(0, end)).c_str()));
    rest.remove_prefix(end);
  }
  return text;
}

}  // namespace bench
