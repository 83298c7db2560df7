// What ICU itself costs: the floor under conversion.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <unicode/ucnv.h>

namespace bench {

struct ConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

// A pair of open converters with the buffers for texts of up to max_bytes, made once and used for
// every call.
class IcuFloor {
 public:
  IcuFloor(const char* from_charset, const char* to_charset, size_t max_bytes);

  // Each converts a whole text; the view holds until the next call.
  std::string_view convert(std::string_view text);               // ucnv_toUChars, ucnv_fromUChars
  std::string_view convert_with_offsets(std::string_view text);  // both steps in one call each
  // In chunks of the size that the library's bodies have, with offsets, into a new string.
  std::string convert_in_chunks(std::string_view text);

 private:
  Converter from;
  Converter to;
  std::vector<UChar> units;
  std::vector<char> bytes;
  std::vector<int32_t> unit_offsets;
  std::vector<int32_t> byte_offsets;
};

}  // namespace bench
