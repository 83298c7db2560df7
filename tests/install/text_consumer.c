/* A program that converts a text in pieces, in strict C99 and in C++17: every function of
 * i18n_text.h. */
#include <qorvii18n/i18n_text.h>
#include <stdio.h>
#include <string.h>

static int take(void* context, const char* bytes, size_t length) {
  strncat((char*)context, bytes, length);
  return 0;
}

int main(void) {
  i18n_text_status_t status = I18N_TEXT_FULL;
  i18n_text_error_t error;
  i18n_text_converter_t* converter = i18n_text_open("ISO-2022-JP", "UTF-8", &status);
  const char* input = "\033$BF|";
  char taken[20] = "", room[20] = "";
  char* output = room;
  size_t length = 0;
  char* result = i18n_text_convert_all(NULL, "latin1", "gr\303\274n", 5, &length, &error);
  int wrong = result == NULL || strcmp(result, "gr\374n") != 0 || length != 4;
  wrong += error.status != I18N_TEXT_OK;
  i18n_text_free(result);

  wrong += converter == NULL || status != I18N_TEXT_OK;
  status = i18n_text_convert(converter, &input, input + 4, &output, room + sizeof room, 0);
  wrong += status != I18N_TEXT_OK || output != room;
  wrong += i18n_text_convert_to(converter, input, 1, 1, take, taken) != I18N_TEXT_OK;
  wrong += strcmp(taken, "\346\227\245") != 0;
  i18n_text_reset(converter);
  wrong += i18n_text_convert_to(converter, "a\n\377", 3, 1, take, taken) != I18N_TEXT_INVALID;
  i18n_text_get_error(converter, &error);
  wrong += error.position != 2 || error.line != 2 || error.column != 1 || error.character != 0;
  printf("%s, %s\n", i18n_text_status_text(error.status), wrong == 0 ? "as wanted" : "wrong");
  i18n_text_close(converter);
  return wrong;
}
