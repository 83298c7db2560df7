/// @file
/// Strict conversion of texts between charsets, in pieces of any size: files, pipes, networks.
///
/// 1. Strict: nothing is substituted, dropped or written in a form that is read back as something
///    else. Lone surrogates are invalid.
/// 2. Output, status and position are the same however a text is cut into pieces and however little
///    room the output has. Memory does not grow with the text.
/// 3. A charset is any that ICU opens except compound text; a null name is UTF-8.
/// 4. An error ends the text. What was written then are all characters before the one at fault, and
///    what takes the target back to its initial state.
/// 5. Nothing is printed or thrown, and nothing of the caller's memory is kept after a call. Input
///    and output may not overlap.
/// 6. A converter is for one thread at a time. Any number of converters may be used at once, from
///    the first call on.
#ifndef QORVII18N_I18N_TEXT_H
#define QORVII18N_I18N_TEXT_H

#include <stddef.h>
#include <stdint.h>

#include <qorvii18n/text_export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// How a call went.
typedef enum i18n_text_status_t {
  I18N_TEXT_OK = 0,
  I18N_TEXT_FULL = 1,            ///< the output has no room for all; call again
  I18N_TEXT_INVALID = 2,         ///< bytes that are not of the source charset
  I18N_TEXT_INCOMPLETE = 3,      ///< the text ends inside a character
  I18N_TEXT_LACKING = 4,         ///< a character that the target charset lacks
  I18N_TEXT_ENDED = 5,           ///< input after the end of the text
  I18N_TEXT_STOPPED = 6,         ///< the function that takes the output refused it
  I18N_TEXT_UNKNOWN_SOURCE = 7,  ///< ICU does not know the source charset, or it is compound text
  I18N_TEXT_UNKNOWN_TARGET = 8,  ///< the same for the target charset
  I18N_TEXT_OUT_OF_MEMORY = 9    ///< memory ran out
} i18n_text_status_t;

/// What ended a text, and where. Its layout will not change.
typedef struct i18n_text_error_t {
  i18n_text_status_t status;  ///< what went wrong
  /// The code point that is lacking, else 0.
  uint32_t character;
  /// The index of the byte at which the character begins that is invalid, incomplete or lacking,
  /// from the beginning of the text and after any escape sequence: the length of the longest
  /// beginning of the text that converts. In UTF-7, IMAP-mailbox-name and ISCII, and where a
  /// character is several code points, that can be a little before the code point at fault.
  uint64_t position;
  /// The line of that character, from 1. Lines end at LF, CR LF and CR.
  uint64_t line;
  /// Its column in code points, from 1.
  uint64_t column;
} i18n_text_error_t;

/// A text on its way from one charset to another.
typedef struct i18n_text_converter_t i18n_text_converter_t;

/// Takes some output. It must not throw or use the converter.
/// @param context  What the caller passed along.
/// @param bytes  The output, valid during the call.
/// @param length  Its length.
/// @return 0 to go on.
typedef int (*i18n_text_write_t)(void* context, const char* bytes, size_t length);

/// Makes a converter.
/// @param from  The charset of the text.
/// @param to  The charset of the output.
/// @param status  Why there is none; may be null.
/// @return The converter, to be released with i18n_text_close(), or null.
QORVII18N_TEXT_EXPORT i18n_text_converter_t* i18n_text_open(const char* from, const char* to,
                                                            i18n_text_status_t* status);

/// Converts the next piece of a text.
/// @param converter  The converter.
/// @param input  The piece; it is advanced past what was taken. The pointers to the input, or what
/// they point at, may be null when there is none.
/// @param input_end  Its end.
/// @param output  Room; it is advanced past what was written. What is behind that may have been
/// changed, too.
/// @param output_end  The end of the room.
/// @param is_last  Not 0 when no more input comes after this piece, which may be empty.
/// @return
///   - OK: all of the input was taken, and with is_last the output is complete.
///   - FULL: call again, with room for more, the rest of the input and the same is_last. Something
///     was taken or written unless there was no room at all. An error waits until the output before
///     it was written.
///   - INVALID, INCOMPLETE, LACKING: the text is over. How far the input was advanced means
///     nothing: i18n_text_get_error() has the position. Each further call returns the same.
///   - ENDED: there is input, but an earlier call was the last. Without input such a call is OK.
///   - OUT_OF_MEMORY: nothing was taken or written. The call may be repeated.
QORVII18N_TEXT_EXPORT i18n_text_status_t i18n_text_convert(i18n_text_converter_t* converter,
                                                           const char** input,
                                                           const char* input_end, char** output,
                                                           char* output_end, int is_last);

/// Converts the next piece of a text, and hands all output to a function.
/// @param converter  The converter.
/// @param input  The piece; may be null when length is 0.
/// @param length  Its length.
/// @param is_last  Not 0 when no more input comes after this piece, which may be empty.
/// @param write  Takes the output, in parts of at least one byte.
/// @param context  Passed to write.
/// @return As from i18n_text_convert(), but never FULL. STOPPED: write did not return 0, and the
/// text is over. OUT_OF_MEMORY: the call may be repeated with the same arguments; what was written
/// before memory ran out is not written again.
QORVII18N_TEXT_EXPORT i18n_text_status_t i18n_text_convert_to(i18n_text_converter_t* converter,
                                                              const char* input, size_t length,
                                                              int is_last, i18n_text_write_t write,
                                                              void* context);

/// What ended the text.
/// @param converter  The converter.
/// @param error  Receives INVALID, INCOMPLETE or LACKING with a place, STOPPED without one, or OK
/// when no error did, once a call has returned that; may be null.
QORVII18N_TEXT_EXPORT void i18n_text_get_error(const i18n_text_converter_t* converter,
                                               i18n_text_error_t* error);

/// Begins a new text, whatever became of the one before. This cannot fail.
/// @param converter  The converter.
QORVII18N_TEXT_EXPORT void i18n_text_reset(i18n_text_converter_t* converter);

/// Releases a converter, at any time.
/// @param converter  The converter, or null.
QORVII18N_TEXT_EXPORT void i18n_text_close(i18n_text_converter_t* converter);

/// Converts a whole text.
/// @param from  The charset of the text.
/// @param to  The charset of the output.
/// @param text  The text; may be null when length is 0.
/// @param length  Its length.
/// @param result_length  Receives the length of the result, 0 when there is none; may be null.
/// @param error  Receives what went wrong, zeros on success; may be null.
/// @return The result, with a NUL after it that the length does not count, to be released with
/// i18n_text_free(); or null, and there is no part of a result.
QORVII18N_TEXT_EXPORT char* i18n_text_convert_all(const char* from, const char* to,
                                                  const char* text, size_t length,
                                                  size_t* result_length, i18n_text_error_t* error);

/// Releases a result of i18n_text_convert_all().
/// @param result  The result, or null.
QORVII18N_TEXT_EXPORT void i18n_text_free(char* result);

/// A few English words about a status.
/// @param status  The status.
/// @return Constant text.
QORVII18N_TEXT_EXPORT const char* i18n_text_status_text(i18n_text_status_t status);

#ifdef __cplusplus
}
#endif

#endif
