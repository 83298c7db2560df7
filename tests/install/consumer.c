/* A mail program in strict C99: every C header, a header and a body encoded, a charset converted.
 */
#include <qorvii18n/i18n_catalog.h>
#include <qorvii18n/i18n_charset.h>
#include <qorvii18n/i18n_iconv.h>
#include <qorvii18n/i18n_mime.h>
#include <qorvii18n/version.h>
#include <stdio.h>
#include <string.h>

static int expect(const char* what, const char* is, const char* wanted) {
  const int same = is != NULL && strcmp(is, wanted) == 0;
  printf("%s: %s%s\n", what, is != NULL ? is : "(null)", same ? "" : " is wrong");
  return same ? 0 : 1;
}

int main(void) {
  const i18n_charset_t* utf8 = i18n_charset_open("UTF-8");
  const i18n_charset_t* latin1 = i18n_charset_open("latin1");
  i18n_mime_encoding_t encoding = I18N_MIME_NONE;
  char* target = NULL;
  char* body = i18n_mime_encode("gr\xC3\xBCn", "UTF-8", "ISO-8859-1", 0.9, &encoding, &target);
  char* subject = i18n_mime_encode_header_b64("gr\xC3\xBCn", "UTF-8", "UTF-8");
  char* converted = i18n_iconv_easy(latin1, "\xFC", 1, utf8, NULL, NULL);

  int wrong = expect("body", body, "gr=FCn");
  wrong += expect("target", target, "ISO-8859-1");
  wrong += expect("subject", subject, "=?UTF-8?B?Z3LDvG4=?=");
  wrong += expect("converted", converted, "\xC3\xBC");
  wrong += expect("charset", i18n_charset_get_name(latin1), "ISO-8859-1");
  wrong += encoding != I18N_MIME_QP || i18n_iconv() != 1 || i18n_iconv_detect_codeset(utf8) != 0;
  wrong += _i18n_i18n_msg_table_adr() == NULL;

  char numbers[40];
  snprintf(numbers, sizeof numbers, "%d.%d.%d.", QORVII18N_VERSION_MAJOR, QORVII18N_VERSION_MINOR,
      QORVII18N_VERSION_PATCH);
  wrong += strncmp(QORVII18N_VERSION, numbers, strlen(numbers)) != 0;

  i18n_iconv_free(converted);
  i18n_mime_free(subject);
  i18n_mime_free(target);
  i18n_mime_free(body);
  return wrong;
}
