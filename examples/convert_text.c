#include "convert_text.h"

#include <stdint.h>

#include <qorvii18n/i18n_iconv.h>

i18n_charset_t* open_charset(const char* name) {
  i18n_charset_t* charset = i18n_charset_open(name);
  if (charset == NULL) fail(exit_failed, "unknown charset: %s", name);
  return charset;
}

text_t convert_text(const char* name, text_t text, const i18n_charset_t* from,
                    const i18n_charset_t* to) {
  const char* from_name = i18n_charset_get_name(from);
  const char* to_name = i18n_charset_get_name(to);
  text_t converted = {NULL, 0};
  size_t position = 0;
  int status = i18n_iconv_easy_ex(from, text.bytes, text.size, &position, to, &converted.bytes,
                                  &converted.size);
  /* -1 and -3 give the number of bytes read, which is the number of the last byte read. -4 gives
   * the index at which the last character that was converted begins; the next one failed. */
  if (status == -1) {
    fail(exit_failed, "%s: cannot convert at byte %zu: it ends inside a %s character", name,
         position, from_name);
  } else if (status == -3) {
    fail(exit_failed, "%s: cannot convert at byte %zu: not %s", name, position, from_name);
  } else if (status == -4 && converted.size == 0) {
    fail(exit_failed, "%s: cannot convert from byte 1 on: %s lacks the character", name, to_name);
  } else if (status == -4) {
    fail(exit_failed, "%s: cannot convert after the character at byte %zu: %s lacks the next one",
         name, position + 1, to_name);
  }

  /* Status 0 does not tell of half a surrogate pair, which UTF-7 and its kin can hold: the output
   * just ends there. i18n_iconv_easy() gives no result then, and otherwise the same bytes. */
  text_t whole = {allocate(converted.size), 0};
  int64_t size = (int64_t)converted.size + 1;
  if (i18n_iconv_easy(from, text.bytes, (int)text.size, to, whole.bytes, &size) == NULL) {
    fail(exit_failed, "%s: cannot convert to %s", name, to_name);
  }
  i18n_iconv_free(converted.bytes);
  whole.size = (size_t)size;
  return whole;
}
