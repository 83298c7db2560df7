/* MIME transfer encoding of text for mail.
 *
 * 1. Texts are NUL-terminated byte strings and must not be null. The input is bytes in the source
 *    charset; the encoded result is 7-bit text. Body functions give quoted-printable or base64 text
 *    in lines of at most 76 characters separated by CR LF, with no line break at the end; the
 *    input's own line breaks are encoded like any other byte. Header functions give encoded words of
 *    at most 75 characters, folded with CR LF TAB.
 * 2. Charset names are names or aliases that ICU knows. Encoded words name the target exactly as it
 *    was passed, so a name that comes from outside has to be vetted first: see i18n_charset.h.
 * 3. An encoding function never returns null. Whatever fails (a name that is null or unknown, or
 *    too long to leave a base64 word any room: 62 bytes; bytes that are not of the source charset; a
 *    character that the mail charset lacks), the result is an unencoded copy of the input. Nothing
 *    is substituted. Diagnostics on standard error tell why, unless a name was null or there is no
 *    mail charset to choose: of text that cannot be converted the offending bytes and their position
 *    in bytes, which in rare cases is that of a neighbour (docs/limits.md).
 * 4. Every char* result, and every string stored through to_charset_out, belongs to the caller and
 *    is released with i18n_mime_free(). Results of type const char* belong to the library.
 * 5. When memory runs out, std::bad_alloc propagates.
 * 6. Thread rules: any number of calls may run at once, the first ones included.
 * 7. Text in mail has CR LF line ends: write those into a body before it is encoded.
 */
#ifndef QORVII18N_I18N_MIME_H
#define QORVII18N_I18N_MIME_H

#include <qorvii18n/export.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum i18n_mime_encoding_t {
  I18N_MIME_NONE = 0, /* not encoded */
  I18N_MIME_QP = 1,   /* quoted-printable body, "Q" header words */
  I18N_MIME_B64 = 2   /* base64 body, "B" header words */
} i18n_mime_encoding_t;

/* Fixed encoding: from_charset to to_charset. A body whose two names are the same string is encoded
 * without conversion; header text is always converted. Words hold whole characters as long as the
 * text has no more than 86 UTF-16 units: encode a longer one in pieces, if readers are to decode
 * each word alone. */
QORVII18N_EXPORT char* i18n_mime_encode_qp(const char* str, const char* from_charset,
                                           const char* to_charset);
QORVII18N_EXPORT char* i18n_mime_encode_b64(const char* str, const char* from_charset,
                                            const char* to_charset);
QORVII18N_EXPORT char* i18n_mime_encode_header_qp(const char* str, const char* from_charset,
                                                  const char* to_charset);
QORVII18N_EXPORT char* i18n_mime_encode_header_b64(const char* str, const char* from_charset,
                                                   const char* to_charset);

/* Chosen encoding: quoted-printable when qp_threshold is greater than the fraction of input bytes
 * that it would have to escape, else base64 (also for an empty input). The bytes counted are those
 * of str, before conversion.
 *
 * from_charset null stands for ICU's default charset; to_charset null for the mail charset of the
 * source, which the two functions that get a name, further down, tell. Without a target the result
 * is a copy of str.
 *
 * encoding_out, when not null, receives the encoding that was chosen, or I18N_MIME_NONE when it did
 * not come to a choice. A conversion that fails midway leaves the choice here beside the copy of
 * str. to_charset_out, when not null, receives a new string with the target's name, empty when
 * there is none, whether or not the text could be encoded. */
QORVII18N_EXPORT char* i18n_mime_encode(const char* str, const char* from_charset,
                                        const char* to_charset, double qp_threshold,
                                        i18n_mime_encoding_t* encoding_out, char** to_charset_out);
QORVII18N_EXPORT char* i18n_mime_encode_header(const char* str, const char* from_charset,
                                               const char* to_charset, double qp_threshold);

/* The same from ICU's default charset to its mail charset. Only Shift_JIS has one: where the default
 * is another charset, as UTF-8 is on most systems, the result is a copy of str. */
QORVII18N_EXPORT char* i18n_mime_easy_encode(const char* str, double qp_threshold,
                                             i18n_mime_encoding_t* encoding_out,
                                             char** to_charset_out);
QORVII18N_EXPORT char* i18n_mime_easy_encode_header(const char* str, double qp_threshold);
QORVII18N_EXPORT char* i18n_mime_easy_encode_header_qp(const char* str);
QORVII18N_EXPORT char* i18n_mime_easy_encode_header_b64(const char* str);

/* The mail charset for a source charset, or null where there is none: ISO-2022-JP for bodies and
 * UTF-8 for headers, for every alias of Shift_JIS in any letter case, with or without hyphens. A
 * null charset stands for ICU's default charset. */
QORVII18N_EXPORT const char* i18n_mime_get_body_to_charset_name(const char* charset);
QORVII18N_EXPORT const char* i18n_mime_get_header_to_charset_name(const char* charset);

/* A new string: name with ASCII letters in lower case and without hyphens. Names that the two
 * functions above take for the same give the same string. */
QORVII18N_EXPORT char* i18n_mime_transform_charset_name(const char* name);

/* Releases a string returned by this family. Null is accepted. */
QORVII18N_EXPORT void i18n_mime_free(void* p);

#ifdef __cplusplus
}
#endif

#endif
