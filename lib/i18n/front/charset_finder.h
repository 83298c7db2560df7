// Finds the mail charset for a source charset.
#pragma once

#include <qorviks.h>

#include "core/c_string.h"

// The name under which a charset is looked up: ASCII letters in lower case, hyphens left out,
// everything else as it is.
i18n::CString normalise_charset_name(const char* name);

// Makes the alias tables on the first call, in whichever thread that is.
void init_charset_tables();

class CharsetFinder {
 public:
  // The mail charset for a name, which must not be null; null when there is none.
  const char* get_to_charset_name(const char* name) const;

  const char* get_from_charset() const { return from_charset; }
  const char* get_to_charset() const { return to_charset; }

 protected:
  // Which of the process's two tables to read: they exist once a finder is being made.
  enum class Use { kBody, kHeader };

  // A null source stands for ICU's default converter.
  CharsetFinder(const char* from, Use use);

  const char* from_charset;
  hash_str_t* table;
  const char* to_charset;  // null when there is none
};

class BodyCharsetFinder : public CharsetFinder {
 public:
  explicit BodyCharsetFinder(const char* from) : CharsetFinder(from, Use::kBody) {}
};

class HeaderCharsetFinder : public CharsetFinder {
 public:
  explicit HeaderCharsetFinder(const char* from) : CharsetFinder(from, Use::kHeader) {}
};
