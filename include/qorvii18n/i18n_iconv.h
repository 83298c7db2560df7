/* Conversion of byte strings from one charset to another.
 *
 * 1. Conversion is strict: it stops at the first character that cannot be converted, and nothing is
 *    ever substituted.
 * 2. Lengths and positions are in bytes. Input may contain NUL bytes.
 * 3. Failure is a null result or a negative status. Nothing is printed. When memory runs out,
 *    std::bad_alloc propagates.
 * 4. Buffers that a function allocates belong to the caller and are released with
 *    i18n_iconv_free(); conversion handles belong to the caller until i18n_iconv_close().
 * 5. Thread rules: the one-shot conversions run on the charset handles' own converters, so two of
 *    them must not run at once when they share a charset handle. A conversion handle has converters
 *    of its own and must not be used by two threads at once.
 */
#ifndef QORVII18N_I18N_ICONV_H
#define QORVII18N_I18N_ICONV_H

#include <stddef.h>
#include <stdint.h>

#include <qorvii18n/export.h>
#include <qorvii18n/i18n_charset.h>

#ifdef __cplusplus
extern "C" {
#endif

/* No function converts with a conversion handle: these serve programs that keep the pair of
 * converters that a conversion goes between. */
typedef struct i18n_iconv_t i18n_iconv_t;

/* A new conversion handle with its own copies of both charsets' converters, or null when one cannot
 * be copied. Note the order: target first. */
QORVII18N_EXPORT i18n_iconv_t* i18n_iconv_open(const i18n_charset_t* to,
                                               const i18n_charset_t* from);

/* Closes the handle and its converters. Null is accepted. */
QORVII18N_EXPORT void i18n_iconv_close(i18n_iconv_t* handle);

/* Puts both converters back into their initial state. The handle must not be null. */
QORVII18N_EXPORT void i18n_iconv_reset(i18n_iconv_t* handle);

/* Entry points kept for programs that call them, with any arguments or none: i18n_iconv() converts
 * nothing and returns 1, i18n_iconv_detect_codeset() detects nothing and returns 0. */
#if defined(__cplusplus) || (defined(__STDC_VERSION__) && __STDC_VERSION__ >= 202311L)
QORVII18N_EXPORT int i18n_iconv(...);
QORVII18N_EXPORT int i18n_iconv_detect_codeset(...);
#else
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wstrict-prototypes"
#endif
QORVII18N_EXPORT int i18n_iconv();
QORVII18N_EXPORT int i18n_iconv_detect_codeset();
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
#endif

/* Converts input_length bytes and returns the converted bytes, or null. A negative length is a
 * failure. The text may have one UTF-16 unit for each byte of input; a longer one, which SCSU can
 * make, is a failure, too.
 *
 * output null: the result is a new buffer, released with i18n_iconv_free(). It has room for four
 *   bytes per UTF-16 unit of the text and a NUL; a longer result is a failure. Charsets that shift
 *   between character sets can need more: give a buffer, or use i18n_iconv_easy_ex().
 * output given: the result is that buffer; *output_length is its capacity on entry and must not be
 *   null.
 *
 * *output_length, when given, receives the length in bytes: when the buffer was too small, the
 * length that was needed, which ICU miscounts for LMBCS and compound text; when the target lacks a
 * character, the length up to there; after input that could not be read, or output of 2 GiB and
 * more, which is a failure, it is left alone. A NUL follows the output where there is room for it,
 * and is not counted. */
QORVII18N_EXPORT char* i18n_iconv_easy(const i18n_charset_t* from, const char* input,
                                       int input_length, const i18n_charset_t* to, char* output,
                                       int64_t* output_length);

/* Converts input_length bytes and says what went wrong and where. Returns
 *
 *    0  converted, or the output side failed in a way not listed here: half a surrogate pair at the
 *       end of the text is one
 *   -1  the input ends inside a character;     *error_position: bytes read
 *   -2  the buffer is too small;               *error_position: see below
 *   -3  the input has an invalid sequence;     *error_position: bytes read, the bad ones included
 *   -4  the target lacks a character;          *error_position: see below
 *
 * For -2 and -4 the position is the index of the input byte at which the last character that was
 * converted begins, 0 when none was: the character that failed is the one after it. On 0 the
 * position is not written.
 *
 * *output null: a buffer is allocated and stored there once the input has been read; it belongs to
 *   the caller (i18n_iconv_free()) after every return that stored it, -2 and -4 included. It has 14
 *   bytes for each UTF-16 unit of the text and one more. That is enough for any text on its own,
 *   with one exception: the empty text to ISO-2022-KR, which puts four bytes in front of every text,
 *   gives -2 with a length of 1. Bytes held from an earlier failure need room, too.
 * *output given: that buffer is filled; *output_length is its capacity on entry.
 *
 * On return *output_length is the number of bytes written, also after -2 and -4. The output is not
 * NUL-terminated. error_position and output_length must not be null.
 *
 * The converters are neither reset before nor after: a failure can leave state in the charset
 * handles that the next call continues from (i18n_iconv_easy() resets them). */
QORVII18N_EXPORT int i18n_iconv_easy_ex(const i18n_charset_t* from, const char* input,
                                        size_t input_length, size_t* error_position,
                                        const i18n_charset_t* to, char** output,
                                        size_t* output_length);

/* Releases a buffer that a one-shot conversion allocated. Null is accepted. */
QORVII18N_EXPORT void i18n_iconv_free(void* buffer);

#ifdef __cplusplus
}
#endif

#endif
