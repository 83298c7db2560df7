/// @file
/// The library's message catalog and version banner.
///
/// Diagnostics go through imsg_print() of the kernel-services library with this catalog and the
/// index of a message; a program that puts its own imsg_print() in place reads the texts from here.
/// The catalog is constant and belongs to the library. <qorviks.h>, of the package
/// qorviks, says what is in it.
#ifndef QORVII18N_I18N_CATALOG_H
#define QORVII18N_I18N_CATALOG_H

#include <qorvii18n/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A message catalog of the kernel services.
struct imsg_catalog_t;

/// Gives the catalog of this library.
/// @return The catalog, never null.
QORVII18N_EXPORT const struct imsg_catalog_t* _i18n_i18n_msg_table_adr(void);

/// Prints one line through imsg_print(): library name, version, build time, word size.
QORVII18N_EXPORT void libqorvii18n_print_verid(void);

#ifdef __cplusplus
}
#endif

#endif
