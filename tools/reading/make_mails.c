/* Makes the mails that a file of requests asks for, with libqorvii18n-mail. What the library
 * refuses is printed. A request is a row of strings: path, charset, subject, text, count of
 * addresses, name and address of each, two addresses for Cc, then "plain", or "attachment", its
 * file name, its data. A string has its length and a line end before it, and a NUL after it. */
#include <qorvii18n/i18n_mail.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef struct string_t {
  const char* bytes;
  size_t length;
} string_t;

static string_t next_string(const char** cursor) {
  char* end;
  string_t string;
  string.length = strtoul(*cursor, &end, 10);
  string.bytes = end + 1;
  *cursor = string.bytes + string.length + 1;
  return string;
}

/* Writes a result between two texts and releases it. */
static void put(FILE* file, const char* before, char* result, const char* after, const char* what,
                const i18n_mail_error_t* error) {
  if (result == NULL)
    printf("%s refused: %s (item %zu, position %zu)\n", what, i18n_mail_status_text(error->status),
           error->item, error->position);
  else
    fprintf(file, "%s%s%s", before, result, after);
  i18n_mail_free(result);
}

static void make_mail(const char** cursor) {
  enum { MOST = 8 };
  static const char references[] =
      "<0123456789abcdef0123456789abcdef@example.org> "
      "<0123456789abcdef0123456789abcdef@example.net>";
  i18n_mail_address_t items[MOST];
  i18n_mail_error_t error;
  const char* path = next_string(cursor).bytes;
  const char* charset = next_string(cursor).bytes;
  string_t subject = next_string(cursor);
  string_t text = next_string(cursor);
  size_t count = strtoul(next_string(cursor).bytes, NULL, 10);
  FILE* file = fopen(path, "wb");
  if (file == NULL || count > MOST) abort();

  for (size_t i = 0; i < count; ++i) {
    string_t name = next_string(cursor);
    items[i] = (i18n_mail_address_t){name.bytes, name.length, next_string(cursor).bytes};
  }
  const char* first = next_string(cursor).bytes;
  i18n_mail_address_t copies[] = {{NULL, 0, first}, {NULL, 0, next_string(cursor).bytes}};
  fputs("MIME-Version: 1.0\r\n", file);
  put(file, "", i18n_mail_addresses("From", items, 1, NULL, charset, &error), "\r\n", path, &error);
  put(file, "", i18n_mail_addresses("To", items, count, NULL, charset, &error), "\r\n", path,
      &error);
  put(file, "", i18n_mail_addresses_utf8("Cc", copies, 2, NULL, charset, &error), "\r\n", path,
      &error);
  put(file, "", i18n_mail_header("Subject", subject.bytes, subject.length, NULL, charset, &error),
      "\r\n", path, &error);
  put(file, "", i18n_mail_date("Date", 1795438800, 60, &error), "\r\n", path, &error);
  put(file, "", i18n_mail_message_id("example.org", &error), "\r\n", path, &error);
  put(file, "", i18n_mail_structured("References", references, &error), "\r\n", path, &error);
  char* part =
      i18n_mail_text("plain; format=fixed", text.bytes, text.length, NULL, charset, &error);
  if (strcmp(next_string(cursor).bytes, "plain") == 0) {
    put(file, "", part, "", path, &error);
  } else {
    string_t name = next_string(cursor);
    string_t data = next_string(cursor);
    char* attachment = i18n_mail_attachment("application/octet-stream", name.bytes, name.length,
                                            NULL, data.bytes, data.length, &error);
    const char* parts[] = {part, attachment};
    put(file, "", i18n_mail_multipart("mixed", parts, 2, &error), "", path, &error);
    i18n_mail_free(part);
    i18n_mail_free(attachment);
  }
  fclose(file);
}

int main(int count, char** arguments) {
  FILE* file = count == 2 ? fopen(arguments[1], "rb") : NULL;
  if (file == NULL || fseek(file, 0, SEEK_END) != 0) return 2;
  long size = ftell(file);
  char* requests = malloc((size_t)size + 1);
  rewind(file);
  if (requests == NULL || fread(requests, 1, (size_t)size, file) != (size_t)size) return 2;
  requests[size] = '\0';
  fclose(file);

  for (const char* cursor = requests; cursor < requests + size;) make_mail(&cursor);
  free(requests);
  return 0;
}
