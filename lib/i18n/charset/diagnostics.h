// Printing of the library's catalog messages.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include <qorvii18n/i18n_catalog.h>
#include <qorviks.h>

namespace i18n {

// The value of each is the message's index in the catalog.
enum class Message : int {
  kCannotOpenConverter = 0,    // charset name
  kCannotConvertInput = 1,     // bytes (text), byte position
  kCannotConvertUnicode = 2,   // UTF-16 unit (text), position in units
  kCannotConvertToTarget = 3,  // bytes (text), byte position, UTF-16 unit (text)
  kInvalidCharsetAlias = 4,    // charset name
};

// Messages give positions as int; one beyond that is given as the largest.
inline int printable_position(std::int64_t position) {
  return static_cast<int>(std::min<std::int64_t>(position, std::numeric_limits<int>::max()));
}

template <class... Args>
void print_message(Message message, Args... args) {
  constexpr int error_kind = 6;
  imsg_print(error_kind, _i18n_i18n_msg_table_adr(), static_cast<int>(message), args...);
}

}  // namespace i18n
