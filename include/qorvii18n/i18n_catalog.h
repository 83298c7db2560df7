/// @file
/// The library's message catalog and version banner.
///
/// Diagnostics go through imsg_print() of the kernel-services library with this catalog and the
/// index of a message; a program that puts its own imsg_print() in place reads the texts from here.
/// The catalog is constant and belongs to the library.
#ifndef QORVII18N_I18N_CATALOG_H
#define QORVII18N_I18N_CATALOG_H

#include <stdint.h>

#include <qorvii18n/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A message catalog. The layout is shared with the kernel services and does not change.
typedef struct i18n_msg_table_t {
  const char* long_facility;   ///< the library's name
  const char* short_facility;  ///< a shorter one
  uint16_t catalog_number;     ///< its number among the catalogs of a product
  uint16_t message_count;      ///< the number of texts and of ids
  uint32_t reserved;           ///< 0
  const char* const* texts;    ///< message_count printf formats
  const uint16_t* ids;         ///< message_count message numbers, in the order of texts
} i18n_msg_table_t;

/// Gives the catalog of this library.
/// @return The catalog, never null.
QORVII18N_EXPORT const i18n_msg_table_t* _i18n_i18n_msg_table_adr(void);

/// Prints one line through imsg_print(): library name, version, build time, word size.
QORVII18N_EXPORT void libqorvii18n_print_verid(void);

#ifdef __cplusplus
}
#endif

#endif
