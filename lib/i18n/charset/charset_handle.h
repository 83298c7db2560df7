// What a charset handle holds.
#pragma once

#include <atomic>

#include <qorvii18n/i18n_charset.h>

struct UConverter;
namespace text {
class Charset;
}

struct i18n_charset_t {
  mutable UConverter* converter;  // owned, strict, never closed but for a copy in its place
  const char* name;               // the preferred name, in ICU's alias data

  // Whether the last text that a one-shot conversion read or wrote ended in a failure, which leaves
  // the converter in the middle of it. ICU resets a converter at the end of any other text.
  mutable bool has_unfinished_input;
  mutable bool has_unfinished_output;

  // What the conversion without ICU found under ICU's own name, null when that was not looked up
  // yet.
  mutable std::atomic<const text::Charset*> charset;
};
