/* Charsets by name and strict conversion, for programs: what fails ends the program with a message.
 */
#ifndef QORVII18N_EXAMPLES_CONVERT_TEXT_H
#define QORVII18N_EXAMPLES_CONVERT_TEXT_H

#include <qorvii18n/i18n_charset.h>

#include "support.h"

/* The handle for a charset name given by the user. */
i18n_charset_t* open_charset(const char* name);

/* Converts the whole text; name says in messages where it came from. Messages count bytes from 1.
 */
text_t convert_text(const char* name, text_t text, const i18n_charset_t* from,
                    const i18n_charset_t* to);

#endif
