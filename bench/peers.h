// The independent libraries that do the same work, and the way back from what they make.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace bench {

struct PeerFree {
  void operator()(char* text) const;
};
using PeerText = std::unique_ptr<char, PeerFree>;

// Each gives a new NUL-terminated text from malloc.
PeerText encode_base64_lines(std::string_view text);      // modp_b64, lines of 76, CR LF between
PeerText encode_quoted_printable(std::string_view text);  // GMime's encode step over the whole
PeerText encode_header(const char* text);                 // GMime: encode UTF-8 text, then fold

std::string decode_base64(std::string_view encoded);
std::string decode_quoted_printable(std::string_view encoded);
std::string decode_header(const char* encoded);

void init_peers();

}  // namespace bench
