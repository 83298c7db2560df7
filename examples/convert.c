/* Converts standard input to standard output, from one charset to another: a text of any size, in
 * pieces. What is before an error is written. */
#include <stdio.h>

#include <qorvii18n/i18n_text.h>

static int write_output(void* stream, const char* bytes, size_t length) {
  return fwrite(bytes, 1, length, stream) != length;
}

int main(int argc, char** argv) {
  if (argc != 3) {
    fputs("usage: convert FROM TO\n", stderr);
    return 2;
  }
  i18n_text_status_t status;
  i18n_text_converter_t* converter = i18n_text_open(argv[1], argv[2], &status);
  i18n_text_error_t error = {I18N_TEXT_OK, 0, 0, 0, 0};
  size_t length = 1;
  while (status == I18N_TEXT_OK && length > 0) {
    char piece[65536];
    length = fread(piece, 1, sizeof piece, stdin);
    status = i18n_text_convert_to(converter, piece, length, length == 0, write_output, stdout);
    i18n_text_get_error(converter, &error);
  }
  i18n_text_close(converter);
  if (ferror(stdin) || fflush(stdout) != 0) status = I18N_TEXT_STOPPED;
  if (status == I18N_TEXT_OK) return 0;

  fprintf(stderr, "convert: %s", i18n_text_status_text(status));
  if (error.line > 0) {
    fprintf(stderr, " in line %lu, column %lu", (unsigned long)error.line,
            (unsigned long)error.column);
  }
  fputc('\n', stderr);
  return 1;
}
