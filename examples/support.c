#include "support.h"

#include <errno.h>
#include <limits.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* One-shot conversion counts UTF-16 units and bytes in 32 bits. */
static const size_t max_input = INT_MAX / 2;

void fail(int exit_code, const char* format, ...) {
  va_list arguments;
  fprintf(stderr, "%s: ", program_name);
  va_start(arguments, format);
  vfprintf(stderr, format, arguments);
  va_end(arguments);
  fputc('\n', stderr);
  exit(exit_code);
}

char* option_value(char** argv, int* i) {
  const char* option = argv[*i];
  if (argv[*i + 1] == NULL) fail(exit_usage, "%s needs a value", option);
  return argv[++*i];
}

const char* input_name(const char* file) { return file != NULL ? file : "standard input"; }

static char* resize(char* bytes, size_t size) {
  char* resized = realloc(bytes, size + 1);
  if (resized == NULL) fail(exit_failed, "out of memory");
  return resized;
}

char* allocate(size_t size) { return resize(NULL, size); }

text_t read_whole(const char* file) {
  FILE* stream = file != NULL ? fopen(file, "rb") : stdin;
  if (stream == NULL) fail(exit_failed, "%s: %s", file, strerror(errno));
  size_t capacity = 1 << 16;
  text_t text = {allocate(capacity), 0};
  const char* problem = NULL;
  for (;;) {
    text.size += fread(text.bytes + text.size, 1, capacity - text.size, stream);
    if (text.size > max_input) problem = "larger than 1 GiB";
    if (text.size < capacity || problem != NULL) break;
    capacity *= 2;
    text.bytes = resize(text.bytes, capacity);
  }
  if (ferror(stream)) problem = strerror(errno);
  if (stream != stdin) fclose(stream);
  if (problem != NULL) {
    free(text.bytes);
    fail(exit_failed, "%s: %s", input_name(file), problem);
  }
  text.bytes[text.size] = '\0';
  return text;
}

void write_whole(const char* file, const char* bytes, size_t size) {
  FILE* stream = file != NULL ? fopen(file, "wb") : stdout;
  if (stream == NULL) fail(exit_failed, "%s: %s", file, strerror(errno));
  int written = fwrite(bytes, 1, size, stream) == size;
  /* Closing writes what is buffered, and that can fail, too. */
  if (fclose(stream) == 0 && written) return;
  const char* reason = strerror(errno);
  if (file != NULL && (stream = fopen(file, "wb")) != NULL) fclose(stream);
  fail(exit_failed, "%s: %s", file != NULL ? file : "standard output", reason);
}
