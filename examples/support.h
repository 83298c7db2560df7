/* What the C examples share beside the library: command line, messages, and whole files in and out.
 * What goes wrong here ends the program with a message.
 */
#ifndef QORVII18N_EXAMPLES_SUPPORT_H
#define QORVII18N_EXAMPLES_SUPPORT_H

#include <stddef.h>

enum { exit_failed = 1, exit_usage = 2 };

/* Bytes, followed by a NUL that is not counted. */
typedef struct text_t {
  char* bytes;
  size_t size;
} text_t;

/* Opens every message; each program defines its own. */
extern const char program_name[];

/* Prints "program: message" on standard error and ends the program. */
#if defined(__GNUC__)
__attribute__((noreturn, format(printf, 2, 3)))
#endif
void fail(int exit_code, const char* format, ...);

/* Steps to the argument of the option at *i and returns it. */
char* option_value(char** argv, int* i);

/* A new block for size bytes and a NUL. */
char* allocate(size_t size);

/* How messages call a file to read: its name, or that of standard input, for null. */
const char* input_name(const char* file);

/* The bytes read are on the heap. Null stands for standard input and standard output. A file that
 * could not be written whole is left empty. */
text_t read_whole(const char* file);
void write_whole(const char* file, const char* bytes, size_t size);

#endif
