// The fast road: a text in, mail text out, for the texts that most mail is made of.
//
// It goes over a text without the objects of the exact road, prints nothing and, the tables of
// charsets aside, keeps nothing for later calls. What it is not sure of it leaves: invalid text,
// characters that the target lacks, charsets whose converters look ahead. The exact road then does
// the whole call, and its result and its messages are the call's. A build with QORVII18N_FAST off
// has no fast road and writes the same mail.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include <qorvii18n/i18n_mime.h>

#include "core/c_string.h"

namespace fast {

enum class Use { kBody, kHeader };

// What a MIME function was asked for. The charset names can be null.
struct Work {
  Use use;
  i18n_mime_encoding_t encoding;
  const char* from_charset;
  const char* to_charset;
  // How many bytes of the text quoted-printable escapes, where that was counted for a choice.
  std::optional<size_t> escapes = std::nullopt;
};

// The encoded text, or null when this road leaves it to the exact one.
i18n::CString encode(const Work& work, std::string_view text);

}  // namespace fast
