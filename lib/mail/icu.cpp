#include "mail/icu.h"

#include <algorithm>
#include <cstdint>

#include "mail/call.h"
#include "text/icu/limits.h"

namespace mail {

namespace {

// How many elements of the input a converter that stopped has taken without converting them: those
// that it will look at again, and those that it reports.
constexpr int8_t longest_report = 32;
size_t count_taken(UConverter* converter, std::string_view) {
  char invalid[longest_report];
  int8_t size = longest_report;
  UErrorCode status = U_ZERO_ERROR;
  ucnv_getInvalidChars(converter, invalid, &size, &status);
  return static_cast<size_t>(size) + static_cast<size_t>(ucnv_toUCountPending(converter, &status));
}
size_t count_taken(UConverter* converter, std::u16string_view) {
  char16_t invalid[longest_report];
  int8_t size = longest_report;
  UErrorCode status = U_ZERO_ERROR;
  ucnv_getInvalidUChars(converter, invalid, &size, &status);
  return static_cast<size_t>(size) +
         static_cast<size_t>(ucnv_fromUCountPending(converter, &status));
}

template <class Function, class In, class Out>
Outcome convert(Function function, UConverter* converter, std::basic_string_view<In> input,
                std::basic_string<Out>& output, std::vector<size_t>* offsets) {
  constexpr size_t most = 1024;
  Out buffer[most];
  // GSM 03.38 has two entries written for some units, which puts those of later units out of place:
  // so units are asked for one by one where entries are.
  const size_t room = offsets != nullptr ? 1 : most;
  int32_t starts[64];
  const In* const begin = input.data();
  const In* const end = begin + input.size();
  const In* source = begin;
  size_t last_start = 0;
  UErrorCode status = U_ZERO_ERROR;
  ucnv_reset(converter);
  output.clear();
  for (bool more = true; more;) {
    const In* const piece = source;
    const In* const piece_end = piece + std::min<size_t>(end - piece, text::most_units_at_once);
    Out* target = buffer;
    starts[0] = -1;  // some converters leave entries unwritten
    status = U_ZERO_ERROR;
    function(converter, &target, buffer + room, &source, piece_end,
             offsets != nullptr ? starts : nullptr, piece_end == end, &status);
    const auto size = static_cast<size_t>(target - buffer);
    output.append(buffer, size);
    if (offsets != nullptr && size != 0) {
      // A unit that did not fit begins where the one before it does.
      if (starts[0] >= 0) last_start = static_cast<size_t>(piece - begin + starts[0]);
      offsets->push_back(last_start);
    }
    more = status == U_BUFFER_OVERFLOW_ERROR || (U_SUCCESS(status) && source != end);
  }
  check_memory(status);
  if (U_SUCCESS(status)) return {true, input.size()};
  const auto consumed = static_cast<size_t>(source - begin);
  return {false, consumed - std::min(consumed, count_taken(converter, input))};
}

}  // namespace

Outcome to_unicode(UConverter* converter, std::string_view bytes, std::u16string& units,
                   std::vector<size_t>* offsets) {
  return convert(ucnv_toUnicode, converter, bytes, units, offsets);
}

Outcome from_unicode(UConverter* converter, std::u16string_view units, std::string& bytes) {
  return convert(ucnv_fromUnicode, converter, units, bytes, nullptr);
}

}  // namespace mail
