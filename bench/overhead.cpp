// What a call costs on an empty text, its heap allocations, and those of each further chunk.
#include <cstdio>
#include <string>

#include <qorvii18n/i18n_iconv.h>
#include <qorvii18n/i18n_mime.h>

#include "allocations.h"
#include "families.h"
#include "pairs.h"
#include "report.h"

namespace bench {

namespace {

// Chunks of input, for a text of one byte a character.
constexpr size_t plain_chunk = 256;
constexpr size_t converted_chunk = 86;
constexpr size_t no_chunk = 0;

using Function = std::function<void(const std::string& text)>;

double allocations_per_chunk(const Function& function, size_t chunk) {
  constexpr size_t size = 64 * plain_chunk * converted_chunk;
  const auto count = [&](size_t length) {
    const std::string text(length, 'a');
    return static_cast<double>(count_allocations([&] { function(text); }));
  };
  const size_t chunks = size / chunk;
  return (count(2 * size) - count(size)) / static_cast<double>(chunks);
}

void print(const char* name, size_t chunk, const Function& function) {
  const std::string empty;
  const auto call = [&] { function(empty); };
  const double time = time_call(call);  // also opens what stays open
  std::printf("%-40s %11s %11zu", name, format_time(time).c_str(), count_allocations(call));
  if (chunk != no_chunk) std::printf(" %11.2f", allocations_per_chunk(function, chunk));
  std::printf("\n");
}

void print(const char* name, size_t chunk, decltype(&i18n_mime_encode_qp) encode, const char* to) {
  print(name, chunk,
        [=](const std::string& text) { i18n_mime_free(encode(text.c_str(), "UTF-8", to)); });
}

}  // namespace

void print_overhead() {
  std::printf("\n%-40s %11s %11s %11s\n", "empty text", "time", "allocations", "a chunk");
  print("i18n_mime_encode_b64, names equal", plain_chunk, i18n_mime_encode_b64, "UTF-8");
  print("i18n_mime_encode_qp, names equal", plain_chunk, i18n_mime_encode_qp, "UTF-8");
  print("i18n_mime_encode_b64", converted_chunk, i18n_mime_encode_b64, "ISO-8859-1");
  print("i18n_mime_encode_qp", converted_chunk, i18n_mime_encode_qp, "ISO-8859-1");
  print("i18n_mime_encode_header_b64", converted_chunk, i18n_mime_encode_header_b64, "UTF-8");
  print("i18n_mime_encode_header_qp", converted_chunk, i18n_mime_encode_header_qp, "UTF-8");
  print("i18n_mime_encode, names equal", plain_chunk, [](const std::string& text) {
    i18n_mime_free(i18n_mime_encode(text.c_str(), "UTF-8", "UTF-8", 0.5, nullptr, nullptr));
  });
  print("i18n_mime_encode_header", converted_chunk, [](const std::string& text) {
    i18n_mime_free(i18n_mime_encode_header(text.c_str(), "UTF-8", "UTF-8", 0.5));
  });
  const i18n_charset_t* from = i18n_charset_open("UTF-8");
  const i18n_charset_t* to = i18n_charset_open("ISO-8859-1");
  print("i18n_iconv_easy", no_chunk, [=](const std::string& text) {
    i18n_iconv_free(i18n_iconv_easy(from, text.data(), 0, to, nullptr, nullptr));
  });
  print("i18n_iconv_easy_ex", no_chunk, [=](const std::string& text) {
    char* output = nullptr;
    size_t position, size = 0;
    i18n_iconv_easy_ex(from, text.data(), 0, &position, to, &output, &size);
    i18n_iconv_free(output);
  });
}

}  // namespace bench
