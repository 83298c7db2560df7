/// @file
/// MIME transfer encoding of text for mail. To make whole fields and parts of mails, with errors
/// that say what and where, take i18n_mail.h.
///
/// 1. Texts are NUL-terminated byte strings and must not be null. The input is bytes in the source
///    charset, so that cannot be UTF-16 or UTF-32, whose text has NUL bytes in it. The encoded
///    result is 7-bit text. Body functions give quoted-printable or base64 text in lines of at most
///    76 characters separated by CR LF, with no line break at the end; the input's own line breaks
///    are encoded like any other byte. Header functions give encoded words of at most 75
///    characters, folded with CR LF TAB, for every text, plain ASCII too. Words hold whole
///    characters as long as the text has no more than 86 UTF-16 units: encode a longer one in
///    pieces, if readers are to decode each word alone.
/// 2. Charset names are names or aliases that ICU knows. Encoded words name the target exactly as
///    it was passed, so a name that comes from outside has to be checked first: see i18n_charset.h.
/// 3. An encoding function never returns null. Whatever fails (a name that is null or unknown, or
///    too long to leave a base64 word any room: 62 bytes; bytes that are not of the source charset;
///    a character that the mail charset lacks), the result is an unencoded copy of the input.
///    Nothing is substituted, though ICU leaves out characters that show nothing, such as the soft
///    hyphen, where the mail charset lacks them. Diagnostics tell why, unless a name was null or
///    there is no mail charset to choose: of text that cannot be converted the offending bytes and
///    their position in bytes, which in rare cases is that of a neighbour (limits.md).
/// 4. So compare result and input before you send anything. A header that is equal failed, and its
///    line breaks would start new fields. A body that is equal failed, too, unless it needs no
///    encoding: i18n_mime_encode_qp() between two equal names, which checks nothing, then gives
///    the same again. This holds where ASCII is itself in the source charset, as it is not in
///    EBCDIC, UTF-7, HZ, UTF-16 and others (limits.md).
/// 5. Every char* result, and every string stored through to_charset_out, belongs to the caller and
///    is released with i18n_mime_free(). Results of type const char* belong to the library.
/// 6. When memory runs out, std::bad_alloc is thrown, which ends a C program.
/// 7. Thread rules: any number of calls may run at once, the first ones included.
/// 8. Text in mail has CR LF line ends: write those into a body before it is encoded.
/// 9. Quoted-printable escapes all bytes but printable ASCII, and of that # $ = @ [ \ ] ^ { | } ~
///    and the backquote; "Q" words escape blanks, ? and _, too.
#ifndef QORVII18N_I18N_MIME_H
#define QORVII18N_I18N_MIME_H

#include <qorvii18n/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Transfer encodings.
typedef enum i18n_mime_encoding_t {
  I18N_MIME_NONE = 0,  ///< not encoded
  I18N_MIME_QP = 1,    ///< quoted-printable body, "Q" header words
  I18N_MIME_B64 = 2    ///< base64 body, "B" header words
} i18n_mime_encoding_t;

/// Encodes a body as quoted-printable.
/// @param str  The text.
/// @param from_charset  Its charset.
/// @param to_charset  The charset of the mail. When the two names are the same string, the text is
/// encoded without conversion, and not checked.
/// @return The encoded body, or a copy of str.
QORVII18N_EXPORT char* i18n_mime_encode_qp(const char* str, const char* from_charset,
                                           const char* to_charset);

/// Encodes a body as base64.
/// @param str  The text.
/// @param from_charset  Its charset.
/// @param to_charset  The charset of the mail, as for i18n_mime_encode_qp().
/// @return The encoded body, or a copy of str.
QORVII18N_EXPORT char* i18n_mime_encode_b64(const char* str, const char* from_charset,
                                            const char* to_charset);

/// Encodes a header as "Q" words.
/// @param str  The text, which is always converted.
/// @param from_charset  Its charset.
/// @param to_charset  The charset of the mail.
/// @return The encoded words, or a copy of str.
QORVII18N_EXPORT char* i18n_mime_encode_header_qp(const char* str, const char* from_charset,
                                                  const char* to_charset);

/// Encodes a header as "B" words, which are also right for names in front of addresses.
/// @param str  The text, which is always converted.
/// @param from_charset  Its charset.
/// @param to_charset  The charset of the mail.
/// @return The encoded words, or a copy of str.
QORVII18N_EXPORT char* i18n_mime_encode_header_b64(const char* str, const char* from_charset,
                                                   const char* to_charset);

/// Encodes a body as quoted-printable or as base64, whichever the threshold chooses.
/// @param str  The text.
/// @param from_charset  Its charset; null for ICU's default charset.
/// @param to_charset  The charset of the mail; null for the one that
/// i18n_mime_get_body_to_charset_name() gives. When both names are the same string, the text is
/// encoded without conversion, and not checked.
/// @param qp_threshold  Use quoted-printable if fewer than this fraction of the bytes of str need
/// escaping, before conversion and line breaks included; else base64, also for an empty text.
/// @param encoding_out  If not null, receives the encoding that was chosen, or I18N_MIME_NONE if no
/// encoding was chosen. A conversion that fails midway leaves the choice here beside the copy of
/// str.
/// @param to_charset_out  If not null, receives a new string with the name of the mail charset,
/// empty when there is none, whether or not the text could be encoded.
/// @return The encoded body, or a copy of str, also when there is no mail charset.
QORVII18N_EXPORT char* i18n_mime_encode(const char* str, const char* from_charset,
                                        const char* to_charset, double qp_threshold,
                                        i18n_mime_encoding_t* encoding_out, char** to_charset_out);

/// Encodes a header as "Q" or as "B" words, whichever the threshold chooses.
/// @param str  The text, which is always converted.
/// @param from_charset  Its charset; null for ICU's default charset.
/// @param to_charset  The charset of the mail; null for the one that
/// i18n_mime_get_header_to_charset_name() gives.
/// @param qp_threshold  Use "Q" words if fewer than this fraction of the bytes of str need
/// escaping, before conversion; else "B" words, also for an empty text.
/// @return The encoded words, or a copy of str, also when there is no mail charset.
QORVII18N_EXPORT char* i18n_mime_encode_header(const char* str, const char* from_charset,
                                               const char* to_charset, double qp_threshold);

/// Encodes a body in ICU's default charset for its mail charset: i18n_mime_encode() with null for
/// both charsets, and so a copy of str where the default has no mail charset, as UTF-8 has none.
/// @param str  The text.
/// @param qp_threshold  As for i18n_mime_encode().
/// @param encoding_out  As for i18n_mime_encode().
/// @param to_charset_out  As for i18n_mime_encode().
/// @return The encoded body, or a copy of str.
QORVII18N_EXPORT char* i18n_mime_easy_encode(const char* str, double qp_threshold,
                                             i18n_mime_encoding_t* encoding_out,
                                             char** to_charset_out);

/// Encodes a header in ICU's default charset for its mail charset: i18n_mime_encode_header() with
/// null for both charsets, and so a copy of str where the default has no mail charset.
/// @param str  The text, which is always converted.
/// @param qp_threshold  As for i18n_mime_encode_header().
/// @return The encoded words, or a copy of str.
QORVII18N_EXPORT char* i18n_mime_easy_encode_header(const char* str, double qp_threshold);

/// Encodes a header in ICU's default charset for its mail charset as "Q" words, if there is one.
/// @param str  The text.
/// @return The encoded words, or a copy of str.
QORVII18N_EXPORT char* i18n_mime_easy_encode_header_qp(const char* str);

/// Encodes a header in ICU's default charset for its mail charset as "B" words, if there is one.
/// @param str  The text.
/// @return The encoded words, or a copy of str.
QORVII18N_EXPORT char* i18n_mime_easy_encode_header_b64(const char* str);

/// Gives the charset in which the body of a mail is customarily sent; i18n_mime_names(3) has a
/// table.
/// @param charset  The charset of the text, in any letter case, with or without hyphens; null for
/// ICU's default charset.
/// @return The name of that charset; null when there is none, as for most charsets.
QORVII18N_EXPORT const char* i18n_mime_get_body_to_charset_name(const char* charset);

/// Gives the charset in which the headers of a mail are customarily sent.
/// @param charset  The charset of the text, in any letter case, with or without hyphens; null for
/// ICU's default charset.
/// @return The name of that charset; null when there is none, as for most charsets.
QORVII18N_EXPORT const char* i18n_mime_get_header_to_charset_name(const char* charset);

/// Gives the form of a charset name in which the two functions above look it up: names that come
/// out alike mean the same to them.
/// @param name  The name, not null.
/// @return A new string: name with ASCII letters in lower case and without hyphens.
QORVII18N_EXPORT char* i18n_mime_transform_charset_name(const char* name);

/// Releases a string that a function of this header returned or stored.
/// @param p  The string; null is accepted.
QORVII18N_EXPORT void i18n_mime_free(void* p);

#ifdef __cplusplus
}
#endif

#endif
