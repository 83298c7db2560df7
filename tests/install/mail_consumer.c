/* A program that makes a mail, in strict C99 and in C++17: every function of i18n_mail.h. */
#include <qorvii18n/i18n_mail.h>
#include <stdio.h>
#include <string.h>

static int expect(char* result, const char* wanted) {
  const int same = result != NULL && strcmp(result, wanted) == 0;
  printf("%s%s\n", result != NULL ? result : "(null)", same ? "" : " is wrong");
  i18n_mail_free(result);
  return same ? 0 : 1;
}

int main(void) {
  i18n_mail_address_t to = {"Klein, J.", 9, "j@example.org"};
  i18n_mail_error_t error;
  int wrong = expect(i18n_mail_header("Subject", "gr\xC3\xBCn", 5, NULL, "latin1", &error),
      "Subject: =?ISO-8859-1?Q?gr=FCn?=");
  wrong += expect(
      i18n_mail_addresses("To", &to, 1, NULL, NULL, &error), "To: \"Klein, J.\" <j@example.org>");
  wrong += expect(
      i18n_mail_parameter("filename", "a b.pdf", 7, NULL, &error), ";\r\n filename=\"a b.pdf\"");
  wrong += expect(i18n_mail_text("plain", "a", 1, NULL, NULL, &error),
      "Content-Type: text/plain; charset=US-ASCII\r\n"
      "Content-Transfer-Encoding: 7bit\r\n\r\na\r\n");
  wrong += expect(i18n_mail_data("a/b", "a", 1, &error),
      "Content-Type: a/b\r\nContent-Transfer-Encoding: base64\r\n\r\nYQ==\r\n");
  wrong += i18n_mail_header("Subject", "a\n", 2, NULL, NULL, &error) != NULL;
  wrong += error.status != I18N_MAIL_FORBIDDEN_CHARACTER || error.item != 0 || error.position != 1;
  printf("%s\n", i18n_mail_status_text(error.status));
  return wrong;
}
