/* A program that makes a mail, in strict C99 and in C++17. */
#include <qorvii18n/i18n_mail.h>
#include <stdio.h>
#include <string.h>

static int expect(char* result, const char* wanted) {
  const int same = result != NULL && strncmp(result, wanted, strlen(wanted)) == 0;
  printf("%s%s\n", result != NULL ? result : "(null)", same ? "" : " is wrong");
  i18n_mail_free(result);
  return same ? 0 : 1;
}

int main(void) {
  i18n_mail_address_t to = {"Klein, J.", 9, "j@k\303\266ln.example"};
  i18n_mail_error_t error;
  int wrong = expect(i18n_mail_header("Subject", "gr\303\274n", 5, NULL, "latin1", &error),
      "Subject: =?ISO-8859-1?Q?gr=FCn?=");
  wrong +=
      expect(i18n_mail_addresses("To", &to, 1, NULL, NULL, &error), "To: \"Klein, J.\" <j@xn--");
  wrong += expect(i18n_mail_text("plain", "a", 1, NULL, NULL, &error), "Content-Type: text/plain;");
  wrong += i18n_mail_header("Subject", "a\n", 2, NULL, NULL, &error) != NULL;
  printf("%s\n", i18n_mail_status_text(error.status));
  return wrong;
}
