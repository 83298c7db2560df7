/* A program in C99 that uses every header for C. */
#include <stdio.h>
#include <string.h>

#include <qorvii18n/i18n_catalog.h>
#include <qorvii18n/i18n_charset.h>
#include <qorvii18n/i18n_iconv.h>
#include <qorvii18n/i18n_mime.h>

static int expect(int holds, const char* what) {
  if (!holds) fprintf(stderr, "does not hold: %s\n", what);
  return holds ? 0 : 1;
}

int main(void) {
  int failures = 0;
  int64_t length = 0;
  i18n_mime_encoding_t encoding = I18N_MIME_NONE;
  char* text = i18n_mime_encode("a = b", "UTF-8", "UTF-8", 0.5, &encoding, NULL);
  failures += expect(strcmp(text, "a =3D b") == 0 && encoding == I18N_MIME_QP, "mime");
  i18n_mime_free(text);

  text = i18n_iconv_easy(i18n_charset_open("ISO-8859-1"), "\xe9", 1,
                         i18n_charset_open_special(I18N_CHARSET_SPECIAL_UTF8), NULL, &length);
  failures += expect(length == 2 && strcmp(text, "\xc3\xa9") == 0, "iconv");
  i18n_iconv_free(text);
  failures += expect(i18n_iconv() == 1 && i18n_iconv(text, 2) == 1, "any arguments");
  failures += expect(i18n_iconv_detect_codeset() == 0, "no arguments");
  failures += expect(_i18n_i18n_msg_table_adr()->message_count == 5, "catalog");
  return failures;
}
