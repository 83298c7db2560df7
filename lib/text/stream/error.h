// What an error in a text comes to: its place, and the output that is still owed.
#pragma once

#include <cstdint>
#include <string>

#include <qorvii18n/i18n_text.h>

#include "text/stream/history.h"
#include "text/stream/source.h"
#include "text/stream/target.h"

namespace text {

// As it shows on the way: the unit that cannot be had, or cannot be written.
struct Failure {
  i18n_text_status_t status;
  std::uint64_t unit;
};

struct Verdict {
  i18n_text_error_t error;
  std::string output;  // what comes after the bytes that were written
};

// Where half of a pair begins, of which the other half is still to come. It may throw
// std::bad_alloc.
std::uint64_t find_lead(const Mark& now, const History& history, const Source& source);

// Goes the way to a failure once more. It may throw std::bad_alloc.
Verdict judge(Failure failure, const History& history, const Source& source, const Target& target,
              std::uint64_t written);

}  // namespace text
