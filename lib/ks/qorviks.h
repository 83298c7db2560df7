/* Kernel services: string-keyed tables, printed messages and reports of failed checks.
 *
 * These are the six operations that libqorvii18n imports. It reaches them through the dynamic
 * linker only, so a program that defines one of them puts its own in place for the whole process.
 *
 * Thread rules: a table belongs to one thread at a time while entries are made; lookups alone may
 * run at once. The printing functions may be called from any thread.
 */
#ifndef QORVIKS_H
#define QORVIKS_H

#include <stdint.h>

#if defined(__GNUC__)
#define QORVIKS_EXPORT __attribute__((visibility("default")))
#else
#define QORVIKS_EXPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* A table from NUL-terminated strings, compared byte for byte, to pointers. */
typedef struct hash_str_t hash_str_t;

/* A new, empty table; it lives until the process ends. The arguments tune other implementations and
 * are ignored here. */
QORVIKS_EXPORT hash_str_t* hash_str_create(int size, int value_size, int flags);

/* Nonzero, and the address of the entry's value through slot, when the key is there. Otherwise 0,
 * and slot is left as it was. scratch is not used. */
QORVIKS_EXPORT int hash_str_lookup(hash_str_t* table, const char* key, uint64_t* scratch,
                                   void*** slot);

/* Stores the address of the value of the entry for key through slot, making the entry, with a copy
 * of the key and a null value, when there is none. The address stays valid as long as the table.
 * Nonzero when the entry was there. */
QORVIKS_EXPORT int hash_str_enter(hash_str_t* table, const char* key, uint64_t* scratch,
                                  void*** slot);

/* A message catalog. Libraries and programs are built apart, so the layout does not change. */
typedef struct imsg_catalog_t {
  const char* long_facility;  /* whose messages these are */
  const char* short_facility; /* a shorter name for it */
  uint16_t catalog_number;    /* its number among the catalogs of a product */
  uint16_t message_count;     /* the number of texts and of ids */
  uint32_t reserved;          /* 0 */
  const char* const* texts;   /* printf formats */
  const uint16_t* ids;        /* the numbers of the messages, in the order of texts */
} imsg_catalog_t;

/* The message index that says that a format string stands in place of the catalog. */
#define IMSG_FORMAT_INDEX (-1)

/* Formats message number index (from 0) of an imsg_catalog_t, or the format string itself, with the
 * printf-style arguments that follow, and writes it to standard error in one piece, with a line
 * feed when it does not end with one. Returns the number of bytes written. */
QORVIKS_EXPORT int imsg_print(int kind, const void* catalog_or_format, int index, ...);

/* The same text, without an added line feed, into a buffer that must be large enough. Returns its
 * length in bytes. */
QORVIKS_EXPORT int imsg_sprintf(char* buffer, int kind, const void* catalog_or_format, int index,
                                ...);

/* Reports a failed internal check on standard error and returns. */
QORVIKS_EXPORT void pfm_assert_fail(const char* expression, const char* source, int line);

#ifdef __cplusplus
}
#endif

#endif
