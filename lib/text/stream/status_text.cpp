// i18n_text_status_text().
#include <qorvii18n/i18n_text.h>

const char* i18n_text_status_text(i18n_text_status_t status) {
  switch (status) {
    case I18N_TEXT_OK:
      return "no error";
    case I18N_TEXT_FULL:
      return "no room for more output";
    case I18N_TEXT_INVALID:
      return "invalid text";
    case I18N_TEXT_INCOMPLETE:
      return "the text ends inside a character";
    case I18N_TEXT_LACKING:
      return "a character that the target charset lacks";
    case I18N_TEXT_ENDED:
      return "input after the end of the text";
    case I18N_TEXT_STOPPED:
      return "the output was refused";
    case I18N_TEXT_UNKNOWN_SOURCE:
      return "unknown source charset";
    case I18N_TEXT_UNKNOWN_TARGET:
      return "unknown target charset";
    case I18N_TEXT_OUT_OF_MEMORY:
      return "out of memory";
  }
  return "unknown status";
}
