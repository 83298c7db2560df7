/* A mail program in strict C99: every C header, a header and a body encoded, a charset converted.
 */
#include <qorvii18n/i18n_catalog.h>
#include <qorvii18n/i18n_charset.h>
#include <qorvii18n/i18n_iconv.h>
#include <qorvii18n/i18n_mime.h>
#include <qorvii18n/version.h>
#include <stdio.h>
#include <string.h>

int main(void) {
  const i18n_charset_t* utf8 = i18n_charset_open("UTF-8");
  char* body = i18n_mime_encode_qp("gr\xC3\xBCn", "UTF-8", "ISO-8859-1");
  char* subject = i18n_mime_encode_header_b64("gr\xC3\xBCn", "UTF-8", "UTF-8");
  char* converted = i18n_iconv_easy(i18n_charset_open("latin1"), "\xFC", 1, utf8, NULL, NULL);
  char all[100], numbers[40];
  int wrong = snprintf(all, sizeof all, "%s %s %s", body, subject, converted) < 0;
  wrong += strcmp(all, "gr=FCn =?UTF-8?B?Z3LDvG4=?= \xC3\xBC") != 0;
  wrong += _i18n_i18n_msg_table_adr() == NULL;
  snprintf(numbers, sizeof numbers, "%d.%d.%d.", QORVII18N_VERSION_MAJOR, QORVII18N_VERSION_MINOR,
      QORVII18N_VERSION_PATCH);
  wrong += strncmp(QORVII18N_VERSION, numbers, strlen(numbers)) != 0;
  printf("%s%s\n", all, wrong ? " is wrong" : "");
  i18n_iconv_free(converted);
  i18n_mime_free(subject);
  i18n_mime_free(body);
  return wrong;
}
