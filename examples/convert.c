/* Converts a file from one charset to another, as a whole or not at all. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <qorvii18n/i18n_charset.h>

#include "convert_text.h"
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
