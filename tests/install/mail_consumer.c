/* A program that makes a mail, in strict C99 and in C++17: every function of i18n_mail.h. Of what
 * they make, the begin is looked at. */
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
  i18n_mail_address_t to = {"Klein, J.", 9, "j@example.org"};
  i18n_mail_error_t error;
  i18n_mail_address_t* items;
  const char* parts[1];
  char lines[6], *part;
  size_t count;
  int wrong = expect(i18n_mail_header("Subject", "gr\xC3\xBCn", 5, NULL, "latin1", &error),
      "Subject: =?ISO-8859-1?Q?gr=FCn?=");
  wrong += expect(
      i18n_mail_addresses("To", &to, 1, NULL, NULL, &error), "To: \"Klein, J.\" <j@example.org>");
  wrong += expect(
      i18n_mail_parameter("filename", "a b.pdf", 7, NULL, &error), ";\r\n filename=\"a b.pdf\"");
  wrong += expect(i18n_mail_text("plain", "a", 1, NULL, NULL, &error), "Content-Type: text/plain;");
  wrong += expect(i18n_mail_data("a/b", "a", 1, &error), "Content-Type: a/b\r\nContent-Transfer");
  wrong += expect(i18n_mail_addresses_utf8("To", &to, 1, NULL, NULL, &error), "To: \"Klein, J.\"");
  wrong += expect(i18n_mail_structured("References", "<a@b>", &error), "References: <a@b>");
  wrong += expect(i18n_mail_date("Date", 1795438800, 60, &error), "Date: Mon, 23 Nov 2026 14:");
  part = i18n_mail_attachment("a/b", "c", 1, NULL, "a", 1, &error);
  parts[0] = part;
  wrong += expect(i18n_mail_multipart("mixed", parts, 1, &error),
      "Content-Type: multipart/mixed; boundary=\"=_1_=\"\r\n\r\n--=_1_=\r\n"
      "Content-Type: a/b\r\nContent-Disposition: attachment;\r\n filename=c\r\n");
  i18n_mail_free(part);
  part = i18n_mail_message_id("example.org", &error);
  wrong += part == NULL || strncmp(part, "Message-ID: <", 13) != 0;
  i18n_mail_free(part);
  items = i18n_mail_parse_addresses("a@b, c <d@e>", 12, NULL, &count, &error);
  wrong += items == NULL || count != 2 || strcmp(items[1].address, "d@e") != 0;
  i18n_mail_free(items);
  wrong += i18n_mail_base64_size(57) != 78 || i18n_mail_base64(lines, "a", 1) != 6;
  wrong += memcmp(lines, "YQ==\r\n", 6) != 0;
  wrong += i18n_mail_header("Subject", "a\n", 2, NULL, NULL, &error) != NULL;
  wrong += error.status != I18N_MAIL_FORBIDDEN_CHARACTER || error.item != 0 || error.position != 1;
  printf("%s\n", i18n_mail_status_text(error.status));
  return wrong;
}
