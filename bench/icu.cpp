#include "icu.h"

#include "pairs.h"

namespace bench {

namespace {

constexpr size_t chunk_units = 86;
constexpr size_t chunk_bytes = 256;
constexpr size_t max_bytes_per_unit = 8;  // a kanji between two escape sequences

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

}  // namespace

IcuFloor::IcuFloor(const char* from_charset, const char* to_charset, size_t max_bytes)
    : from(open_strict(from_charset)),
      to(open_strict(to_charset)),
      units(max_bytes + chunk_units),
      bytes(units.size() * max_bytes_per_unit),
      unit_offsets(2 * units.size()),
      byte_offsets(2 * bytes.size()) {}

std::string_view IcuFloor::convert(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const int32_t unit_count =
      ucnv_toUChars(from.get(), units.data(), static_cast<int32_t>(units.size()), text.data(),
                    static_cast<int32_t>(text.size()), &status);
  const int32_t size = ucnv_fromUChars(to.get(), bytes.data(), static_cast<int32_t>(bytes.size()),
                                       units.data(), unit_count, &status);
  require(U_SUCCESS(status), "bare conversion");
  return {bytes.data(), static_cast<size_t>(size)};
}

std::string_view IcuFloor::convert_with_offsets(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const char* source = text.data();
  UChar* unit = units.data();
  ucnv_toUnicode(from.get(), &unit, units.data() + units.size(), &source, text.data() + text.size(),
                 unit_offsets.data(), true, &status);
  const UChar* unit_source = units.data();
  char* byte = bytes.data();
  ucnv_fromUnicode(to.get(), &byte, bytes.data() + bytes.size(), &unit_source, unit,
                   byte_offsets.data(), true, &status);
  require(U_SUCCESS(status), "bare conversion with offsets");
  return {bytes.data(), static_cast<size_t>(byte - bytes.data())};
}

std::string IcuFloor::convert_in_chunks(std::string_view text) {
  std::string result;
  result.reserve(2 * text.size());
  const char* source = text.data();
  const char* const source_end = text.data() + text.size();
  UErrorCode read_status;
  do {
    read_status = U_ZERO_ERROR;
    UChar* unit = units.data();
    ucnv_toUnicode(from.get(), &unit, units.data() + chunk_units, &source, source_end,
                   unit_offsets.data(), true, &read_status);
    const UChar* unit_source = units.data();
    UErrorCode write_status;
    do {
      write_status = U_ZERO_ERROR;
      char* byte = bytes.data();
      ucnv_fromUnicode(to.get(), &byte, bytes.data() + chunk_bytes, &unit_source, unit,
                       byte_offsets.data(), static_cast<UBool>(read_status == U_ZERO_ERROR),
                       &write_status);
      result.append(bytes.data(), byte);
    } while (write_status == U_BUFFER_OVERFLOW_ERROR);
    require(U_SUCCESS(write_status), "bare conversion in chunks");
  } while (read_status == U_BUFFER_OVERFLOW_ERROR);
  require(U_SUCCESS(read_status), "bare conversion in chunks");
  return result;
}

}  // namespace bench
