#include "peers.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <gmime/gmime.h>
#include <modp_b64.h>

namespace bench {

namespace {

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

}  // namespace

void PeerFree::operator()(char* text) const { std::free(text); }

PeerText encode_base64_lines(std::string_view text) {
  constexpr size_t line_bytes = 57;
  constexpr size_t line_break_size = 2;
  const size_t lines = text.size() / line_bytes + 1;
  PeerText result(
      static_cast<char*>(std::malloc(modp_b64_encode_len(text.size()) + lines * line_break_size)));
  char* out = result.get();
  while (text.size() > line_bytes) {
    out += modp_b64_encode(out, text.data(), line_bytes);
    *out++ = '\r';
    *out++ = '\n';
    text.remove_prefix(line_bytes);
  }
  modp_b64_encode(out, text.data(), text.size());
  return result;
}

PeerText encode_quoted_printable(std::string_view text) {
  GMimeEncoding encoder;
  g_mime_encoding_init_encode(&encoder, GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
  PeerText result(
      static_cast<char*>(std::malloc(g_mime_encoding_outlen(&encoder, text.size()) + 1)));
  result.get()[g_mime_encoding_flush(&encoder, text.data(), text.size(), result.get())] = '\0';
  return result;
}

// GMime folds whole fields only.
PeerText encode_header(const char* text) {
  char* encoded = g_mime_utils_header_encode_text(nullptr, text, "UTF-8");
  char* field = g_strconcat("Subject: ", encoded, nullptr);
  PeerText folded(g_mime_utils_unstructured_header_fold(nullptr, nullptr, field));
  g_free(field);
  g_free(encoded);
  return folded;
}

std::string decode_base64(std::string_view encoded) {
  return decode(encoded, GMIME_CONTENT_ENCODING_BASE64);
}

std::string decode_quoted_printable(std::string_view encoded) {
  return decode(encoded, GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
}

// Word by word: GMime's decoder takes neighbours for one base64 text, which padding would end.
std::string decode_header(const char* encoded) {
  const std::string unfolded = take(g_mime_utils_header_unfold(encoded));
  std::string_view rest = unfolded;
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

void init_peers() { g_mime_init(); }

}  // namespace bench
