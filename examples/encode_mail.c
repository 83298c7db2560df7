/* Makes a mail out of a text: a field with the subject, and a part with the text. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <qorvii18n/i18n_mail.h>

#include "support.h"

const char program_name[] = "encode_mail";

static const char help[] =
    "usage: encode_mail --subject TEXT [--from CHARSET] [--to CHARSET] [FILE]\n"
    "\n"
    "Prints a mail with the text of FILE, or of standard input. A text or subject that cannot be\n"
    "encoded as a whole is not printed at all.\n"
    "\n"
    "  --subject TEXT  the subject, in the same charset as the text\n"
    "  --from CHARSET  what text and subject are written in; UTF-8 unless given\n"
    "  --to CHARSET    what to send; UTF-8 unless given\n"
    "  --help          prints this text\n"
    "\n"
    "Messages count bytes from 1. Exit status: 0 encoded, 1 not encoded, 2 wrong usage.\n";

typedef struct options_t {
  const char* subject;
  const char* from;
  const char* to;
  const char* file;
} options_t;

static options_t parse_options(char** argv) {
  options_t options = {NULL, NULL, NULL, NULL};
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

/* Ends the program with what went wrong, if anything did. */
static void check(const char* what, i18n_mail_error_t error) {
  const char* reason = i18n_mail_status_text(error.status);
  switch (error.status) {
    case I18N_MAIL_OK:
      return;
    case I18N_MAIL_INVALID_TEXT:
    case I18N_MAIL_LACKING_CHARACTER:
    case I18N_MAIL_FORBIDDEN_CHARACTER:
      fail(exit_failed, "%s: %s at byte %zu", what, reason, error.position + 1);
    default:
      fail(exit_failed, "%s", reason);
  }
}

int main(int argc, char** argv) {
  (void)argc;
  options_t options = parse_options(argv);
  text_t text = read_whole(options.file);
  i18n_mail_error_t error;
  char* subject = i18n_mail_header("Subject", options.subject, strlen(options.subject),
                                   options.from, options.to, &error);
  check("subject", error);
  char* part = i18n_mail_text("plain", text.bytes, text.size, options.from, options.to, &error);
  check(input_name(options.file), error);

  static const char version[] = "\r\nMIME-Version: 1.0\r\n";
  char* mail = allocate(strlen(subject) + strlen(version) + strlen(part));
  sprintf(mail, "%s%s%s", subject, version, part);
  write_whole(NULL, mail, strlen(mail));

  free(mail);
  i18n_mail_free(part);
  i18n_mail_free(subject);
  free(text.bytes);
  return EXIT_SUCCESS;
}
