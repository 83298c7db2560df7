/* A program that converts texts, in strict C99 and in C++17. */
#include <qorvii18n/i18n_text.h>
#include <stdio.h>

static int take(void* stream, const char* bytes, size_t length) {
  return fwrite(bytes, 1, length, (FILE*)stream) != length;
}

int main(void) {
  i18n_text_converter_t* converter = i18n_text_open("ISO-2022-JP", "UTF-8", NULL);
  i18n_text_error_t error;
  int wrong = i18n_text_convert_to(converter, "a\n\377", 3, 1, take, stdout) != I18N_TEXT_INVALID;
  i18n_text_get_error(converter, &error);
  i18n_text_close(converter);
  printf("%s\n", i18n_text_status_text(error.status));
  return wrong + (error.line != 2);
}
