/// @file
/// Charset handles: one shared handle for every charset that ICU can convert.
///
/// 1. Handles belong to the library and live until the process ends. Nothing here is ever freed by
///    the caller: neither a handle, nor a name, nor the list of all charsets.
/// 2. A charset has one handle, whichever of its aliases it was opened by, so handles of the same
///    charset compare equal as pointers.
/// 3. Failure is a null result. Nothing is printed. When memory runs out, std::bad_alloc is thrown,
///    which ends a C program.
/// 4. Names are NUL-terminated and must not be null.
/// 5. Thread rules: no two of the functions that open may run at once, since they write to tables
///    of the whole process. i18n_charset_get_name() may run at any time. What converts with a
///    handle has rules of its own: see i18n_iconv.h.
///
/// A name that comes from outside: ICU ignores punctuation and control bytes in names, and takes
/// what follows a comma for options, so a string that it opens is not yet fit for a mail header.
/// Refuse a name with a comma, open it, and pass on i18n_charset_get_name(), unless that has a
/// comma: some aliases lead to a charset that has no other name. The result is harmless, but fit
/// for mail only where ASCII stays as it is, which limits.md has a function for. A name with
/// options must not be opened at all: the preferred name is looked up for the spelling that opened
/// the charset first, and would be ICU's internal one from then on.
#ifndef QORVII18N_I18N_CHARSET_H
#define QORVII18N_I18N_CHARSET_H

#include <qorvii18n/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A charset handle. Only the library looks inside.
typedef struct i18n_charset_t i18n_charset_t;

/// Selectors of i18n_charset_open_special().
typedef enum i18n_charset_special_t {
  I18N_CHARSET_SPECIAL_DEFAULT = 0,  ///< ICU's default converter when first opened this way
  I18N_CHARSET_SPECIAL_UTF8 = 1,     ///< UTF-8
  I18N_CHARSET_SPECIAL_UTF16 = 2,    ///< UTF-16 in the machine's byte order, no byte order mark
  I18N_CHARSET_SPECIAL_UTF32 = 3     ///< UTF-32 in the machine's byte order, no byte order mark
} i18n_charset_special_t;

/// Opens a charset by name. The first request for a spelling opens a converter; every later one is
/// a table lookup.
/// @param name  A converter name or alias.
/// @return The handle, or null when ICU cannot open the name.
QORVII18N_EXPORT i18n_charset_t* i18n_charset_open(const char* name);

/// Opens one of four well-known charsets.
/// @param selector  An i18n_charset_special_t.
/// @return The handle, or null for any other selector or when ICU cannot open the charset.
QORVII18N_EXPORT i18n_charset_t* i18n_charset_open_special(int selector);

/// Opens every charset that ICU lists.
/// @return An array of their handles in ICU's order, followed by a null entry; the same array every
/// time. A charset whose converter cannot be opened leaves a null entry of its own before that:
/// count with ICU's ucnv_countAvailable() rather than by the first null.
QORVII18N_EXPORT i18n_charset_t** i18n_charset_open_all(void);

/// Gives the charset's preferred name.
/// @param charset  A handle, not null.
/// @return The MIME name of the spelling that opened the charset first, else its IANA name, else
/// ICU's own.
QORVII18N_EXPORT const char* i18n_charset_get_name(const i18n_charset_t* charset);

#ifdef __cplusplus
}
#endif

#endif
