/* Makes the mails that a file of requests asks for, with libqorvii18n-mail and nothing else. What
 * the library refuses is printed. A request is a row of strings: what to do, and with what. Each
 * has its length and a line end before it, and a NUL after it. Parts are put on a stack, from which
 * a multipart takes its own; "end" writes the only one that is left. */
#include <qorvii18n/i18n_mail.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef struct string_t {
  const char* bytes;
  size_t length;
} string_t;

enum { MOST_PARTS = 16, MOST_ADDRESSES = 400, PIECE = 57 * 1024 };

static const char* cursor;
static FILE* mail;
static const char* path;
static char* parts[MOST_PARTS];
static size_t part_count;
static i18n_mail_error_t error;

static string_t next_string(void) {
  char* end;
  string_t string;
  string.length = strtoul(cursor, &end, 10);
  string.bytes = end + 1;
  cursor = string.bytes + string.length + 1;
  return string;
}

static const char* next(void) { return next_string().bytes; }

static int is(const char* string, const char* other) { return strcmp(string, other) == 0; }

/* A copy of a result, which is released, or of what takes its place when the library refuses. There
 * is room for more bytes after it. */
static char* own(char* result, size_t more) {
  const char* text = result != NULL ? result : "Refused: \r\n\r\n";
  char* copy = malloc(strlen(text) + 1 + more);
  if (copy == NULL) abort();
  if (result == NULL)
    printf("%s refused: %s (item %zu, position %zu)\n", path, i18n_mail_status_text(error.status),
           error.item, error.position);
  strcpy(copy, text);
  i18n_mail_free(result);
  return copy;
}

static void put_field(char* result) {
  char* field = own(result, 0);
  fprintf(mail, "%s\r\n", field);
  free(field);
}

static void push(char* part) {
  if (part_count == MOST_PARTS) abort();
  parts[part_count++] = part;
}

static void put_addresses(void) {
  static i18n_mail_address_t items[MOST_ADDRESSES];
  const char* name = next();
  const char* charset = next();
  size_t count = strtoul(next(), NULL, 10);
  if (count > MOST_ADDRESSES) abort();
  for (size_t i = 0; i < count; ++i) {
    string_t who = next_string();
    items[i] = (i18n_mail_address_t){who.bytes, who.length, next()};
  }
  char* field = i18n_mail_addresses(name, items, count, NULL, charset, &error);
  if (field == NULL && error.status == I18N_MAIL_NEEDS_SMTPUTF8)
    field = i18n_mail_addresses_utf8(name, items, count, NULL, charset, &error);
  put_field(field);
}

/* Addresses as a person types them. */
static void put_typed(void) {
  const char* name = next();
  string_t list = next_string();
  size_t count;
  i18n_mail_address_t* items =
      i18n_mail_parse_addresses(list.bytes, list.length, NULL, &count, &error);
  put_field(items == NULL ? NULL : i18n_mail_addresses(name, items, count, NULL, NULL, &error));
  i18n_mail_free(items);
}

/* An attachment whose base64 is written piece by piece. */
static void push_pieces(void) {
  const char* type = next();
  string_t name = next_string();
  string_t data = next_string();
  char* head = i18n_mail_attachment(type, name.bytes, name.length, NULL, NULL, 0, &error);
  char* part = own(head, i18n_mail_base64_size(data.length));
  size_t written = strlen(part);
  for (size_t begin = 0; begin < data.length; begin += PIECE) {
    size_t size = data.length - begin < PIECE ? data.length - begin : PIECE;
    written += i18n_mail_base64(part + written, data.bytes + begin, size);
  }
  part[written] = '\0';
  push(part);
}

static void push_multipart(void) {
  const char* subtype = next();
  size_t count = strtoul(next(), NULL, 10);
  if (count > part_count) abort();
  char** first = parts + part_count - count;
  char* whole = i18n_mail_multipart(subtype, (const char* const*)first, count, &error);
  for (size_t i = 0; i < count; ++i) free(first[i]);
  part_count -= count;
  push(own(whole, 0));
}

/* Puts a field in front of the last part. */
static void put_in_front(char* result) {
  char* field = own(result, 2 + strlen(parts[part_count - 1]));
  strcat(strcat(field, "\r\n"), parts[part_count - 1]);
  free(parts[part_count - 1]);
  parts[part_count - 1] = field;
}

static void end_mail(void) {
  if (part_count != 1) abort();
  fprintf(mail, "MIME-Version: 1.0\r\n%s", parts[0]);
  free(parts[--part_count]);
  fclose(mail);
}

static void follow(const char* request) {
  if (is(request, "mail")) {
    mail = fopen(path = next(), "wb");
    if (mail == NULL) abort();
  } else if (is(request, "date")) {
    const char* seconds = next();
    put_field(i18n_mail_date("Date", atoll(seconds), atoi(next()), &error));
  } else if (is(request, "message-id")) {
    put_field(i18n_mail_message_id(next(), &error));
  } else if (is(request, "structured") || is(request, "in front")) {
    const char* name = next();
    char* field = i18n_mail_structured(name, next(), &error);
    is(request, "structured") ? put_field(field) : put_in_front(field);
  } else if (is(request, "header")) {
    const char* name = next();
    string_t text = next_string();
    put_field(i18n_mail_header(name, text.bytes, text.length, NULL, next(), &error));
  } else if (is(request, "addresses")) {
    put_addresses();
  } else if (is(request, "typed")) {
    put_typed();
  } else if (is(request, "text")) {
    const char* subtype = next();
    string_t text = next_string();
    push(own(i18n_mail_text(subtype, text.bytes, text.length, NULL, next(), &error), 0));
  } else if (is(request, "attachment")) {
    const char* type = next();
    string_t name = next_string();
    string_t data = next_string();
    push(own(
        i18n_mail_attachment(type, name.bytes, name.length, NULL, data.bytes, data.length, &error),
        0));
  } else if (is(request, "pieces")) {
    push_pieces();
  } else if (is(request, "multipart")) {
    push_multipart();
  } else if (is(request, "end")) {
    end_mail();
  } else {
    abort();
  }
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

  for (cursor = requests; cursor < requests + size;) follow(next());
  free(requests);
  return 0;
}
