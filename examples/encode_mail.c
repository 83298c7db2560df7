/* Makes a mail out of a text: a subject of encoded words and a quoted-printable or base64 body. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <qorvii18n/i18n_charset.h>
#include <qorvii18n/i18n_mime.h>

#include "convert_text.h"
#include "support.h"

const char program_name[] = "encode_mail";

static const char help[] =
    "usage: encode_mail --subject TEXT [--from CHARSET] [--to CHARSET] [--threshold X] [FILE]\n"
    "\n"
    "Prints a mail with the text of FILE, or of standard input. A text or subject that cannot be\n"
    "encoded as a whole is not printed at all.\n"
    "\n"
    "  --subject TEXT  the subject, in the same charset as the text\n"
    "  --from CHARSET  what text and subject are written in; UTF-8 unless given\n"
    "  --to CHARSET    what to send; the library's mail charsets for the source, or else UTF-8,\n"
    "                  unless given\n"
    "  --threshold X   quoted-printable when less than this fraction of the bytes needs escaping,\n"
    "                  base64 otherwise; 0.3 unless given\n"
    "  --help          prints this text\n"
    "\n"
    "Messages count bytes from 1. Exit status: 0 encoded, 1 not encoded, 2 wrong usage.\n";

typedef struct options_t {
  char* subject;
  const char* from;
  const char* to;
  double threshold;
  const char* file;
} options_t;

enum { line_columns = 76, word_columns = 75 };

static const char subject_field[] = "Subject: ";

static double parse_threshold(const char* text) {
  char* end;
  double threshold = strtod(text, &end);
  if (end == text || *end != '\0' || text[strspn(text, "0123456789.")] != '\0') {
    fail(exit_usage, "--threshold is not a number such as 0.3: %s", text);
  }
  return threshold;
}

static options_t parse_options(char** argv) {
  options_t options = {NULL, "UTF-8", NULL, 0.3, NULL};
  for (int i = 1; argv[i] != NULL; ++i) {
    if (strcmp(argv[i], "--help") == 0) {
      write_whole(NULL, help, strlen(help));
      exit(EXIT_SUCCESS);
    } else if (strcmp(argv[i], "--subject") == 0) {
      options.subject = option_value(argv, &i);
    } else if (strcmp(argv[i], "--from") == 0) {
      options.from = option_value(argv, &i);
    } else if (strcmp(argv[i], "--to") == 0) {
      options.to = option_value(argv, &i);
    } else if (strcmp(argv[i], "--threshold") == 0) {
      options.threshold = parse_threshold(option_value(argv, &i));
    } else if (argv[i][0] == '-') {
      fail(exit_usage, "no such option: %s (see --help)", argv[i]);
    } else if (options.file != NULL) {
      fail(exit_usage, "one file too many: %s (see --help)", argv[i]);
    } else {
      options.file = argv[i];
    }
  }
  if (options.subject == NULL) fail(exit_usage, "--subject is needed (see --help)");
  return options;
}

/* What ICU takes for options after a comma would give the charset itself a name that no mail
 * program knows, so such a name is not even opened. */
static const i18n_charset_t* open_users_charset(const char* name) {
  if (strchr(name, ',') != NULL) fail(exit_failed, "no charset for mail: %s", name);
  return open_charset(name);
}

/* The charset's preferred name, which goes into the mail: never the user's own spelling, in which
 * the library overlooks blanks, punctuation and line breaks. */
static const char* name_for_mail(const i18n_charset_t* charset) {
  const char* name = i18n_charset_get_name(charset);
  size_t plain = strspn(name, "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_");
  if (name[plain] != '\0') fail(exit_failed, "no charset for mail: %s", name);
  return name;
}

static const i18n_charset_t* target_charset(const char* users_choice, const char* librarys_choice) {
  if (users_choice != NULL) return open_users_charset(users_choice);
  return open_charset(librarys_choice != NULL ? librarys_choice : "UTF-8");
}

/* The library takes texts up to their first NUL. */
static void refuse_nul(const char* name, text_t text) {
  const char* nul = memchr(text.bytes, '\0', text.size);
  if (nul != NULL) fail(exit_failed, "%s: NUL at byte %zu", name, (size_t)(nul - text.bytes) + 1);
}

/* A start of a UTF-8 text that makes one encoded word of at most the given width; *used receives
 * its bytes. */
static char* encode_word(const char* text, const char* charset, double threshold, size_t columns,
                         size_t* used) {
  enum { max_piece = 200 }; /* more bytes than any charset gets into a word */
  char piece[max_piece + 1];
  size_t size = strlen(text);
  if (size > max_piece) size = max_piece;
  for (;;) {
    while (((unsigned char)text[size] & 0xC0) == 0x80) --size; /* whole characters only */
    if (size == 0 && *text != '\0') fail(exit_failed, "subject: no room for %s words", charset);
    memcpy(piece, text, size);
    piece[size] = '\0';
    char* word = i18n_mime_encode_header(piece, "UTF-8", charset, threshold);
    if (strcmp(word, piece) == 0) fail(exit_failed, "subject: cannot encode in %s", charset);
    size_t length = strlen(word);
    if (strchr(word, '\r') == NULL && length <= columns) {
      *used = size;
      return word;
    }
    i18n_mime_free(word);
    size_t estimate = size * columns / length;
    size = estimate < size ? estimate : size - 1;
  }
}

/* The subject's field, folded. Mail programs decode word by word, so each word is encoded by a call
 * of its own. A call for all of a long text would fold it, too, but its words can share the shift
 * state of a charset like ISO-2022-JP, or a character when the text is longer than 86 UTF-16
 * units. */
static char* encode_subject(const char* subject, const char* charset, double threshold) {
  size_t max_words = strlen(subject) + 1;
  char* field = allocate(strlen(subject_field) + max_words * (strlen("\r\n\t") + word_columns));
  char* end = field + sprintf(field, "%s", subject_field);
  size_t columns = line_columns - strlen(subject_field);
  for (;;) {
    size_t used;
    char* word = encode_word(subject, charset, threshold, columns, &used);
    end += sprintf(end, "%s", word);
    i18n_mime_free(word);
    subject += used;
    if (*subject == '\0') return field;
    end += sprintf(end, "\r\n\t");
    columns = word_columns;
  }
}

/* A body that the library could not encode comes back as it was. */
static int is_copy(const char* encoded, i18n_mime_encoding_t encoding, text_t body,
                   text_t converted) {
  int needs_nothing = encoding == I18N_MIME_QP && strcmp(body.bytes, converted.bytes) == 0;
  return body.size > 0 && strcmp(encoded, body.bytes) == 0 && !needs_nothing;
}

static void print_mail(const char* subject, const char* charset, i18n_mime_encoding_t encoding,
                       const char* body) {
  static const char format[] =
      "%s\r\n"
      "MIME-Version: 1.0\r\n"
      "Content-Type: text/plain; charset=%s\r\n"
      "Content-Transfer-Encoding: %s\r\n"
      "\r\n";
  int is_qp = encoding == I18N_MIME_QP;
  const char* encoding_name = is_qp ? "quoted-printable" : "base64";
  /* Without a soft line break the decoded text would end with a line end of the mail's own. */
  const char* body_end = is_qp ? "=\r\n" : "\r\n";
  size_t body_size = strlen(body);
  char* mail = allocate(sizeof format + strlen(subject) + strlen(charset) + strlen(encoding_name) +
                        body_size + strlen(body_end));
  char* end = mail + sprintf(mail, format, subject, charset, encoding_name);
  memcpy(end, body, body_size);
  end += body_size;
  end += sprintf(end, "%s", body_end);
  write_whole(NULL, mail, (size_t)(end - mail));
  free(mail);
}

int main(int argc, char** argv) {
  (void)argc;
  options_t options = parse_options(argv);
  const i18n_charset_t* from = open_users_charset(options.from);
  const char* from_name = i18n_charset_get_name(from);
  const i18n_charset_t* body_to =
      target_charset(options.to, i18n_mime_get_body_to_charset_name(from_name));
  const i18n_charset_t* subject_to =
      target_charset(options.to, i18n_mime_get_header_to_charset_name(from_name));
  const char* body_charset = name_for_mail(body_to);
  const char* subject_charset = name_for_mail(subject_to);

  /* The conversions find what cannot be encoded and say where; the MIME functions would just give
   * back a copy of it. */
  const char* body_name = input_name(options.file);
  text_t body = read_whole(options.file);
  refuse_nul(body_name, body);
  text_t converted_body = convert_text(body_name, body, from, body_to);
  text_t subject = {options.subject, strlen(options.subject)};
  free(convert_text("subject", subject, from, subject_to).bytes);
  text_t utf8_subject = convert_text("subject", subject, from, open_charset("UTF-8"));
  refuse_nul("subject in UTF-8", utf8_subject);

  char* field = encode_subject(utf8_subject.bytes, subject_charset, options.threshold);
  i18n_mime_encoding_t encoding;
  char* encoded_body =
      i18n_mime_encode(body.bytes, from_name, body_charset, options.threshold, &encoding, NULL);
  if (encoding == I18N_MIME_NONE || is_copy(encoded_body, encoding, body, converted_body)) {
    fail(exit_failed, "%s: cannot encode in %s", body_name, body_charset);
  }
  print_mail(field, body_charset, encoding, encoded_body);

  i18n_mime_free(encoded_body);
  free(field);
  free(utf8_subject.bytes);
  free(converted_body.bytes);
  free(body.bytes);
  return EXIT_SUCCESS;
}
