#include "mail/clusters.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "mail/call.h"
#include "mail/icu.h"

namespace mail {

namespace {

// Two such characters side by side are never of one cluster.
bool stands_alone(std::string_view text, size_t index) {
  UChar32 character;
  U8_NEXT_UNSAFE(text.data(), index, character);
  constexpr UChar32 first_that_joins = 0x300;
  return character < first_that_joins ||
         u_getIntPropertyValue(character, UCHAR_GRAPHEME_CLUSTER_BREAK) == U_GCB_OTHER;
}

}  // namespace

bool Clusters::end_at(std::string_view text, size_t begin, size_t index) {
  if (index == text.size()) return true;
  if (stands_alone(text, previous_character(text, index)) && stands_alone(text, index)) return true;
  UErrorCode status = U_ZERO_ERROR;
  if (iterator_.isNull()) {
    iterator_.adoptInstead(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status));
  }
  to_utf16(text.substr(begin, index - begin), units_);
  const size_t unit = units_.size();
  to_utf16(text.substr(begin, next_character(text, index) - begin), units_);
  if (U_SUCCESS(status)) {
    ubrk_setText(iterator_.getAlias(), units_.data(), static_cast<int32_t>(units_.size()), &status);
  }
  check_memory(status);
  return U_FAILURE(status) || ubrk_isBoundary(iterator_.getAlias(), static_cast<int32_t>(unit));
}

}  // namespace mail
