/// @file
/// Fields and parts of mails, right in one call each: subjects, addresses, file names, bodies.
///
/// 1. A text has a length in bytes and may be null when that is 0. It is in any charset that ICU
///    opens except compound text; a null charset is UTF-8. Other strings are NUL-terminated UTF-8.
/// 2. A result is a new NUL-terminated string of ASCII characters in lines separated by CR LF. It
///    belongs to the caller and is released with i18n_mail_free().
/// 3. A failure is null. Nothing is printed, substituted or thrown, and there is never a part of a
///    result. Every call that has an error argument fills it, with zeros on success; it may be
///    null.
/// 4. Arguments are checked in their order, texts after the charsets that they are read and written
///    in, the name of an item before its address.
/// 5. mail_charset is what readers are told; null is UTF-8, which has every character. All readers
///    know these, and the library writes no other: UTF-8, US-ASCII, ISO-8859-1 to -9, -13 and -15,
///    windows-1250 to -1258, KOI8-R, KOI8-U, IBM866, TIS-620, ISO-2022-JP, Shift_JIS, EUC-JP,
///    EUC-KR, Big5, GB2312, GBK and GB18030. Any of ICU's names for one of them will do; names for
///    its variants stand for it, too, such as ks_c_5601-1987 for EUC-KR. A charset other than UTF-8
///    lacks what readers do not all decode alike: characters for private use, C1 controls, and some
///    more, among them U+301C, U+FF5E, U+2212 and U+FF0D in the Japanese ones.
/// 6. Nothing that a caller passes can add a line to a field, a field to the mail, or a part to it:
///    no line of a body begins with two hyphens. NUL is forbidden in every text, and so are line
///    ends in all but bodies: LF, VT, FF, CR, U+001C to U+001E, U+0085, U+2028 and U+2029.
/// 7. Lines have at most 76 columns, the field's name included. Those with an address, a media
///    type, a word that is not encoded, or a first encoded word beside a long field name can be
///    longer, up to 998.
/// 8. Readers that follow the standards see the text that went in, blanks included;
///    docs/readers.md in the source lists those that do not.
/// 9. All functions may run at once in any threads, from the first call on.
#ifndef QORVII18N_I18N_MAIL_H
#define QORVII18N_I18N_MAIL_H

#include <stddef.h>

#include <qorvii18n/mail_export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// How a call went.
typedef enum i18n_mail_status_t {
  I18N_MAIL_OK = 0,
  I18N_MAIL_UNKNOWN_CHARSET = 1,       ///< ICU does not know charset, or it is compound text
  I18N_MAIL_UNKNOWN_MAIL_CHARSET = 2,  ///< mail cannot be written in mail_charset
  I18N_MAIL_INVALID_TEXT = 3,          ///< bytes that are not of the text's charset
  I18N_MAIL_LACKING_CHARACTER =
      4,  ///< a character that the mail charset lacks, or that not all read
  I18N_MAIL_FORBIDDEN_CHARACTER = 5,  ///< NUL in a text; a line end in one that is no body
  I18N_MAIL_BAD_NAME = 6,             ///< the name of a field or parameter, or a media type
  I18N_MAIL_BAD_ADDRESS = 7,          ///< an address, or a count of 0
  I18N_MAIL_OUT_OF_MEMORY = 8         ///< memory ran out
} i18n_mail_status_t;

/// What went wrong and where. Its layout will not change.
typedef struct i18n_mail_error_t {
  i18n_mail_status_t status;  ///< what
  size_t item;                ///< index of the address item, else 0
  /// In the text, name or address that is at fault, in bytes:
  ///   - the index at which the offending character begins, after any escape sequence; exact, but
  ///     for invalid UTF-7, BOCU-1, ISCII, GSM 03.38 and IMAP-mailbox-name
  ///   - the whole length when something is missing at the end
  ///   - the longest length allowed when it is too long
  ///   - the index at which the domain begins when it is outside ASCII and no domain, or four
  ///     numbers; at which its label begins when that is no encoded one
  ///   - 0 in all other cases
  size_t position;
} i18n_mail_error_t;

/// Someone to write to, or who writes.
typedef struct i18n_mail_address_t {
  const char* name;  ///< a text in the call's charset
  size_t length;     ///< of the name in bytes; 0 leaves the bare address
  /// A dot-atom of at most 64 bytes, '@' and a domain: at most 254 bytes as written. The dot-atom
  /// begins with no hyphen and has no "=?" in it. The labels of the domain have letters, digits,
  /// underscores, and hyphens inside, 63 bytes at most; four numbers are no domain.
  const char* address;
} i18n_mail_address_t;

/// An unstructured field such as `Subject: ...`. Words of printable ASCII between single blanks
/// stay as they are; the rest becomes encoded words, each of which decodes alone.
/// @param name  1 to 64 printable ASCII characters but ':'.
/// @param text,length  The text.
/// @param charset  Its charset.
/// @param mail_charset  The charset of the mail.
/// @param error  What went wrong.
/// @return The field, without a line end after it.
QORVII18N_MAIL_EXPORT char* i18n_mail_header(const char* name, const char* text, size_t length,
                                             const char* charset, const char* mail_charset,
                                             i18n_mail_error_t* error);

/// A field of addresses such as `To: "Klein, J." <j@example.org>, ...`. A domain outside ASCII is
/// written as UTS #46 says.
/// @param name  As for i18n_mail_header().
/// @param items,count  The addresses, one at least.
/// @param charset  The charset of the names in the items.
/// @param mail_charset  The charset of the mail.
/// @param error  What went wrong.
/// @return The field, without a line end after it.
QORVII18N_MAIL_EXPORT char* i18n_mail_addresses(const char* name, const i18n_mail_address_t* items,
                                                size_t count, const char* charset,
                                                const char* mail_charset, i18n_mail_error_t* error);

/// A parameter such as `filename="a b.pdf"`. What plain ASCII cannot hold is written in UTF-8, in
/// pieces when it is long.
/// @param name  1 to 40 characters of a token, but no asterisk, quote or percent sign.
/// @param value,length  The text.
/// @param charset  Its charset.
/// @param error  What went wrong.
/// @return The parameter with ';' and a fold in front, without a line end after it: it follows the
/// value of a field, or another parameter.
QORVII18N_MAIL_EXPORT char* i18n_mail_parameter(const char* name, const char* value, size_t length,
                                                const char* charset, i18n_mail_error_t* error);

/// A part with a text. LF, CR LF and CR become CR LF, and the last line is ended. An ASCII text is
/// declared US-ASCII whatever the mail charset. The body is sent as it is, in quoted-printable or
/// in base64: the shortest that readers get whole.
/// @param subtype  A token of 1 to 127 characters such as `plain` or `html`.
/// @param text,length  The text.
/// @param charset  Its charset.
/// @param mail_charset  The charset of the mail.
/// @param error  What went wrong.
/// @return Content-Type, Content-Transfer-Encoding, an empty line and the body: the end of a mail,
/// or of one of its parts. A boundary after it begins with CR LF.
QORVII18N_MAIL_EXPORT char* i18n_mail_text(const char* subtype, const char* text, size_t length,
                                           const char* charset, const char* mail_charset,
                                           i18n_mail_error_t* error);

/// A part with any bytes in base64, such as a file.
/// @param type  Two tokens of 1 to 127 characters with '/' between them, such as `application/pdf`;
/// multipart and message, for which mail does not allow base64, are not for this function, which
/// does not check that.
/// @param data,length  The bytes; data may be null when length is 0.
/// @param error  What went wrong.
/// @return A part as from i18n_mail_text().
QORVII18N_MAIL_EXPORT char* i18n_mail_data(const char* type, const void* data, size_t length,
                                           i18n_mail_error_t* error);

/// A few English words about a status.
/// @param status  The status.
/// @return Constant text.
QORVII18N_MAIL_EXPORT const char* i18n_mail_status_text(i18n_mail_status_t status);

/// Releases a result.
/// @param result  A result of this family, or null.
QORVII18N_MAIL_EXPORT void i18n_mail_free(char* result);

#ifdef __cplusplus
}
#endif

#endif
