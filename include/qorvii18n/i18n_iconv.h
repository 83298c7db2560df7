/// @file
/// Conversion of byte strings from one charset to another.
///
/// 1. Conversion is strict: it stops at the first character that cannot be converted, and nothing
///    is ever substituted. Only characters that show nothing, such as the soft hyphen, are left out
///    by ICU where the target lacks them; and half a surrogate pair ends the output of
///    i18n_iconv_easy_ex() with result 0.
/// 2. Lengths and positions are in bytes. Input may contain NUL bytes.
/// 3. Failure is a null result or a negative status. Nothing is printed. When memory runs out,
///    std::bad_alloc is thrown, which ends a C program; the handles are then as before the call.
/// 4. Buffers that a function allocates belong to the caller and are released with
///    i18n_iconv_free(); conversion handles belong to the caller until i18n_iconv_close().
/// 5. Thread rules: the one-shot conversions run on the charset handles' own converters, so two of
///    them must not run at once when they share a charset handle, nor one beside an
///    i18n_iconv_open() of that handle. A conversion handle has converters of its own and must not
///    be used by two threads at once.
#ifndef QORVII18N_I18N_ICONV_H
#define QORVII18N_I18N_ICONV_H

#include <stddef.h>
#include <stdint.h>

#include <qorvii18n/export.h>
#include <qorvii18n/i18n_charset.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A conversion handle, for existing programs that hold one. No function converts with it, and new
/// programs have no use for it.
typedef struct i18n_iconv_t i18n_iconv_t;

/// Makes a conversion handle with its own copies of both charsets' converters.
/// @param to  The target, which comes first here.
/// @param from  The source.
/// @return The handle, or null when a converter cannot be copied.
QORVII18N_EXPORT i18n_iconv_t* i18n_iconv_open(const i18n_charset_t* to,
                                               const i18n_charset_t* from);

/// Closes a conversion handle and its converters.
/// @param handle  The handle; null is accepted.
QORVII18N_EXPORT void i18n_iconv_close(i18n_iconv_t* handle);

/// Puts both converters of a conversion handle back into their initial state.
/// @param handle  The handle, not null.
QORVII18N_EXPORT void i18n_iconv_reset(i18n_iconv_t* handle);

#if defined(__cplusplus) || (defined(__STDC_VERSION__) && __STDC_VERSION__ >= 202311L)
/// Converts nothing. The entry point is kept for programs that call it, with any arguments or none.
/// @return 1.
QORVII18N_EXPORT int i18n_iconv(...);

/// Detects nothing. The entry point is kept for programs that call it, with any arguments or none.
/// @return 0.
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

/// Converts a whole byte string, in a single call that does not say why it failed.
/// @param from  The charset of the input.
/// @param input  The text. It may have one UTF-16 unit for each of its bytes; a longer one, which
/// SCSU can make, is a failure.
/// @param input_length  Its length. A negative one is a failure, and so is a null input of any
/// length but 0.
/// @param to  The charset of the output.
/// @param output  A buffer for the result; null to have one allocated, with room for four bytes per
/// UTF-16 unit of the text and a NUL. A longer result is a failure then, which charsets that shift
/// between character sets can need: give a buffer, or use i18n_iconv_easy_ex().
/// @param output_length  On entry the capacity of output; may be null without such a buffer. On
/// return the length of the result; when the buffer was too small, the length that was needed,
/// which ICU miscounts for LMBCS and compound text; when the target lacks a character, the length
/// up to there. Left alone after input that could not be read, and after output of 2 GiB and more,
/// which is a failure.
/// @return output, or the new buffer, or null when the text was not converted. A NUL follows the
/// result where there is room for it, and is not counted. In a new buffer there always is for
/// UTF-8, but not for a result of four bytes per unit and one more, such as `é` in UTF-7.
QORVII18N_EXPORT char* i18n_iconv_easy(const i18n_charset_t* from, const char* input,
                                       int input_length, const i18n_charset_t* to, char* output,
                                       int64_t* output_length);

/// Converts a whole byte string, and says what went wrong and where. The converters are neither
/// reset before nor after: a failure can leave state in the charset handles that the next call
/// continues from (i18n_iconv_easy() resets them). This is not for a text in pieces: after a
/// success they are in their initial state, and a piece that begins in a shift state, or after a
/// byte order mark, is converted into something else with result 0 (limits.md tells where a text
/// may be cut).
/// @param from  The charset of the input.
/// @param input  The text.
/// @param input_length  Its length. More than 2,147,483,647 bytes, and a null input of any length
/// but 0, give -3 at position 0.
/// @param error_position  Receives the position after a failure, and is left alone on 0. Not null.
/// @param to  The charset of the output.
/// @param output  If *output is null, a buffer is allocated and stored there once the input has
/// been read. It belongs to the caller (i18n_iconv_free()) after every return that stored it, -2
/// and -4 included. It has 14 bytes for each UTF-16 unit of the text and one more, enough
/// for any text on its own, with one exception: the empty text to ISO-2022-KR, which puts four
/// bytes in front of every text, gives -2 with a length of 1. Bytes held from an earlier failure
/// need room, too. Otherwise *output is the buffer to fill.
/// @param output_length  On entry the capacity of a buffer that was given. On return the number of
/// bytes written, also after -2 and -4. Not null. The output is not NUL-terminated, and so nothing
/// to pass to a MIME function. When memory runs
/// out, *output_length is 0, and *output as it was: nothing is left to release.
/// @return One of
///   - 0: converted; or the text has half a surrogate pair, as UTF-7, CESU-8, SCSU and a few other
///     charsets can, and the output ends before it: i18n_iconv_easy() refuses such a text
///   - -1: the input ends inside a character; the position is the number of bytes read
///   - -2: the buffer is too small
///   - -3: the input has an invalid sequence; the position is the number of bytes read, the bad
///     ones included
///   - -4: the target lacks a character
///
/// For -2 and -4 the position is the index of the input byte at which the last character begins of
/// which bytes were written. For -4 the character that failed comes after it; for -2 it can be the
/// same one, cut. The position is 0 when nothing was written, and when ICU does not say, as for
/// compound text. limits.md has a function that finds the exact byte.
QORVII18N_EXPORT int i18n_iconv_easy_ex(const i18n_charset_t* from, const char* input,
                                        size_t input_length, size_t* error_position,
                                        const i18n_charset_t* to, char** output,
                                        size_t* output_length);

/// Releases a buffer that a one-shot conversion allocated.
/// @param buffer  The buffer; null is accepted.
QORVII18N_EXPORT void i18n_iconv_free(void* buffer);

#ifdef __cplusplus
}
#endif

#endif
