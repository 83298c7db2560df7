/* Converts a file from one charset to another, as a whole or not at all. */
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <qorvii18n/i18n_iconv.h>

#include "support.h"

const char program_name[] = "convert";

static const char help[] =
    "usage: convert --from CHARSET --to CHARSET [IN [OUT]]\n"
    "\n"
    "Converts the file IN, or standard input, and writes OUT, or standard output. A text that\n"
    "cannot be converted as a whole is not written at all.\n"
    "\n"
    "  --from CHARSET  what IN is written in\n"
    "  --to CHARSET    what OUT shall be written in\n"
    "  --help          prints this text\n"
    "\n"
    "Messages count bytes from 1. Exit status: 0 converted, 1 not converted, 2 wrong usage.\n";

/* The handle for a charset name given by the user. */
static i18n_charset_t* open_charset(const char* name) {
  i18n_charset_t* charset = i18n_charset_open(name);
  if (charset == NULL) fail(exit_failed, "unknown charset: %s", name);
  return charset;
}

/* Converts the whole text, or ends the program with a message about its name. */
static text_t convert_text(const char* name, text_t text, const i18n_charset_t* from,
                           const i18n_charset_t* to) {
  const char* from_name = i18n_charset_get_name(from);
  const char* to_name = i18n_charset_get_name(to);
  text_t converted = {NULL, 0};
  size_t position = 0;
  int status = i18n_iconv_easy_ex(from, text.bytes, text.size, &position, to, &converted.bytes,
                                  &converted.size);
  /* -1 and -3 give the number of bytes read, which is the number of the last byte read. -4 gives
   * the index at which the last character that was converted begins; the next one failed. */
  if (status == -1) {
    fail(exit_failed, "%s: cannot convert at byte %zu: it ends inside a %s character", name,
         position, from_name);
  } else if (status == -3) {
    fail(exit_failed, "%s: cannot convert at byte %zu: not %s", name, position, from_name);
  } else if (status == -4 && converted.size == 0) {
    fail(exit_failed, "%s: cannot convert from byte 1 on: %s lacks the character", name, to_name);
  } else if (status == -4) {
    fail(exit_failed, "%s: cannot convert after the character at byte %zu: %s lacks the next one",
         name, position + 1, to_name);
  }

  /* Status 0 does not tell of half a surrogate pair, which UTF-7 and its kin can hold: the output
   * just ends there. i18n_iconv_easy() gives no result then, and otherwise the same bytes. */
  text_t whole = {allocate(converted.size), 0};
  int64_t size = (int64_t)converted.size + 1;
  if (i18n_iconv_easy(from, text.bytes, (int)text.size, to, whole.bytes, &size) == NULL) {
    fail(exit_failed, "%s: cannot convert to %s", name, to_name);
  }
  i18n_iconv_free(converted.bytes);
  whole.size = (size_t)size;
  return whole;
}

int main(int argc, char** argv) {
  const char* from = NULL;
  const char* to = NULL;
  const char* files[2] = {NULL, NULL};
  int file_count = 0;
  for (int i = 1; i < argc; ++i) {
    if (strcmp(argv[i], "--help") == 0) {
      write_whole(NULL, help, strlen(help));
      return EXIT_SUCCESS;
    } else if (strcmp(argv[i], "--from") == 0) {
      from = option_value(argv, &i);
    } else if (strcmp(argv[i], "--to") == 0) {
      to = option_value(argv, &i);
    } else if (argv[i][0] == '-') {
      fail(exit_usage, "no such option: %s (see --help)", argv[i]);
    } else if (file_count == 2) {
      fail(exit_usage, "one file too many: %s (see --help)", argv[i]);
    } else {
      files[file_count++] = argv[i];
    }
  }
  if (from == NULL || to == NULL) fail(exit_usage, "--from and --to are needed (see --help)");

  const i18n_charset_t* source = open_charset(from);
  const i18n_charset_t* target = open_charset(to);
  text_t input = read_whole(files[0]);
  text_t output = convert_text(input_name(files[0]), input, source, target);
  write_whole(files[1], output.bytes, output.size);
  free(output.bytes);
  free(input.bytes);
  return EXIT_SUCCESS;
}
