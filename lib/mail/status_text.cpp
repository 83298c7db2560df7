// i18n_mail_status_text() and i18n_mail_free().
#include <cstdlib>

#include <qorvii18n/i18n_mail.h>

const char* i18n_mail_status_text(i18n_mail_status_t status) {
  switch (status) {
    case I18N_MAIL_OK:
      return "no error";
    case I18N_MAIL_UNKNOWN_CHARSET:
      return "unknown charset";
    case I18N_MAIL_UNKNOWN_MAIL_CHARSET:
      return "unknown mail charset";
    case I18N_MAIL_INVALID_TEXT:
      return "invalid text";
    case I18N_MAIL_LACKING_CHARACTER:
      return "a character that the mail charset lacks";
    case I18N_MAIL_FORBIDDEN_CHARACTER:
      return "a forbidden character";
    case I18N_MAIL_BAD_NAME:
      return "bad name";
    case I18N_MAIL_BAD_ADDRESS:
      return "bad address";
    case I18N_MAIL_OUT_OF_MEMORY:
      return "out of memory";
    case I18N_MAIL_NEEDS_SMTPUTF8:
      return "an address that needs SMTPUTF8";
    case I18N_MAIL_BAD_VALUE:
      return "bad value";
  }
  return "unknown status";
}

void i18n_mail_free(void* result) { std::free(result); }
