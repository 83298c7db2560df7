/// @file
/// Mails, one call for each field and part: subjects, addresses, dates, texts,
/// attachments. A mail is its fields, CR LF after each, the field `MIME-Version: 1.0` among them,
/// and one part.
///
/// 1. A text has a length in bytes and may be null when that is 0. It is in any charset that ICU
///    opens except compound text; a null charset is UTF-8. Other strings are NUL-terminated UTF-8.
/// 2. A result is a new NUL-terminated string in lines separated by CR LF, of ASCII characters but
///    for local parts from i18n_mail_addresses_utf8(). It belongs to the caller and is released
///    with i18n_mail_free().
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
#include <stdint.h>

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
  I18N_MAIL_BAD_NAME =
      6,  ///< the name of a field or parameter, or a media type with its parameters
  I18N_MAIL_BAD_ADDRESS = 7,     ///< an address, a typed list of them, or a count of 0
  I18N_MAIL_OUT_OF_MEMORY = 8,   ///< memory ran out, or the system had no random bytes
  I18N_MAIL_NEEDS_SMTPUTF8 = 9,  ///< an address that only i18n_mail_addresses_utf8() takes
  I18N_MAIL_BAD_VALUE = 10       ///< the value of a structured field, a date, or a part
} i18n_mail_status_t;

/// What went wrong and where. Its layout will not change.
typedef struct i18n_mail_error_t {
  i18n_mail_status_t status;  ///< what went wrong
  size_t item;                ///< index of the address item or part, else 0
  /// In the text, name, address, value or part that is at fault, in bytes:
  ///   - the index at which the offending character begins, after any escape sequence; exact, but
  ///     for invalid UTF-7, BOCU-1, ISCII, GSM 03.38 and IMAP-mailbox-name
  ///   - the whole length when something is missing at the end
  ///   - the longest length allowed when it is too long
  ///   - the index at which the domain begins when it is outside ASCII and no domain, four numbers,
  ///     or no literal; at which its label begins when that is no encoded one
  ///   - the index of the first byte outside ASCII when an address needs SMTPUTF8
  ///   - 0 where none of these is at fault; 0 is also the index of the first byte
  size_t position;
} i18n_mail_error_t;

/// Someone to write to, or who writes.
typedef struct i18n_mail_address_t {
  const char* name;  ///< a text in the call's charset
  size_t length;     ///< of the name in bytes; 0 leaves the bare address
  /// A local part, '@' and a domain: at most 254 bytes as written. The local part is a dot-atom or
  /// a quoted string of at most 64 bytes, not empty, with no hyphen first and no "=?" in it. The
  /// labels of the domain have letters, digits, underscores, and hyphens inside, 63 bytes at most,
  /// and are not just four numbers; or it is a literal such as [127.0.0.1] or [IPv6:::1].
  const char* address;
} i18n_mail_address_t;

/// An unstructured field such as `Subject: ...`. Words of printable ASCII between single blanks
/// stay as they are; the rest becomes encoded words, each of which decodes alone.
/// @param name  1 to 64 printable ASCII characters but ':'.
/// @param text  The text.
/// @param length  Its length.
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
/// @param items  The addresses.
/// @param count  Their number, 1 or more.
/// @param charset  The charset of the names in the items.
/// @param mail_charset  The charset of the mail.
/// @param error  What went wrong.
/// @return The field, without a line end after it.
QORVII18N_MAIL_EXPORT char* i18n_mail_addresses(const char* name, const i18n_mail_address_t* items,
                                                size_t count, const char* charset,
                                                const char* mail_charset, i18n_mail_error_t* error);

/// The same field for mail that is sent with SMTPUTF8: local parts may have characters outside
/// ASCII, but no controls, blanks and line ends of Unicode, and are written in UTF-8 as they are.
/// i18n_mail_addresses() answers such an address with I18N_MAIL_NEEDS_SMTPUTF8, so that a program
/// can ask its server first.
/// @param name  As for i18n_mail_addresses().
/// @param items  As for i18n_mail_addresses().
/// @param count  As for i18n_mail_addresses().
/// @param charset  As for i18n_mail_addresses().
/// @param mail_charset  As for i18n_mail_addresses().
/// @param error  As for i18n_mail_addresses().
/// @return The field, without a line end after it.
QORVII18N_MAIL_EXPORT char* i18n_mail_addresses_utf8(const char* name,
                                                     const i18n_mail_address_t* items, size_t count,
                                                     const char* charset, const char* mail_charset,
                                                     i18n_mail_error_t* error);

/// The addresses in what a person typed into a To field, such as `"Klein, J." <j@example.org>,
/// k@example.org`. Commas separate them, outside groups semicolons, too; a comma in a name stands
/// within quotes. TAB, CR and LF are blanks. Comments and the names of groups are dropped. It is
/// not for fields of received mail: no words are decoded.
/// @param list  The text.
/// @param length  Its length.
/// @param charset  Its charset.
/// @param count  Receives the number of items, 0 after a failure; must not be null.
/// @param error  What went wrong: at the first mistake I18N_MAIL_BAD_ADDRESS, the index of the item
/// that it concerns, and the position in the list.
/// @return The items in a block for i18n_mail_free(), a block for an empty list, too. Their names
/// and addresses are NUL-terminated and in UTF-8: i18n_mail_addresses_utf8() takes all of them,
/// with a null charset.
QORVII18N_MAIL_EXPORT i18n_mail_address_t* i18n_mail_parse_addresses(
    const char* list, size_t length, const char* charset, size_t* count, i18n_mail_error_t* error);

/// A field whose value has a syntax of its own, such as References, List-Unsubscribe or
/// `To: undisclosed-recipients:;`. It is folded at its blanks; nothing is encoded.
/// @param name  As for i18n_mail_header().
/// @param value  Printable ASCII, not empty, no blank first or last, no words too long for a line.
/// Nothing else is checked.
/// @param error  What went wrong.
/// @return The field, without a line end after it.
QORVII18N_MAIL_EXPORT char* i18n_mail_structured(const char* name, const char* value,
                                                 i18n_mail_error_t* error);

/// A field with a date such as `Date: Mon, 23 Nov 2026 14:00:00 +0100`.
/// @param name  As for i18n_mail_header().
/// @param seconds  The time in seconds since 1970 began in UTC, as time() gives it.
/// @param offset_minutes  What local time is ahead of UTC, -1439 to 1439. The local year must be
/// 1900 to 9999.
/// @param error  What went wrong.
/// @return The field, without a line end after it.
QORVII18N_MAIL_EXPORT char* i18n_mail_date(const char* name, int64_t seconds, int offset_minutes,
                                           i18n_mail_error_t* error);

/// The field `Message-ID: <...@example.org>`, with 128 random bits of the system's.
/// @param domain  One of the sender's, as in an address.
/// @param error  What went wrong.
/// @return The field, without a line end after it.
QORVII18N_MAIL_EXPORT char* i18n_mail_message_id(const char* domain, i18n_mail_error_t* error);

/// A parameter such as `filename="a b.pdf"`. What plain ASCII cannot hold is written in UTF-8, in
/// pieces when it is long.
/// @param name  1 to 40 characters of a token, but no asterisk, quote or percent sign.
/// @param value  The text.
/// @param length  Its length.
/// @param charset  Its charset.
/// @param error  What went wrong.
/// @return The parameter with ';' and a fold in front, without a line end after it: it follows the
/// value of a field, or another parameter.
QORVII18N_MAIL_EXPORT char* i18n_mail_parameter(const char* name, const char* value, size_t length,
                                                const char* charset, i18n_mail_error_t* error);

/// A part with a text. LF, CR LF and CR become CR LF, and the last line is ended. An ASCII text is
/// declared US-ASCII whatever the mail charset. The body is sent as it is, in quoted-printable or
/// in base64: the shortest that readers get whole.
/// @param subtype  A token of 1 to 127 characters such as `plain` or `html`. Parameters can follow,
/// such as `plain; format=flowed`, but no charset: each a ';', a name as for i18n_mail_parameter()
/// that no other has, '=', and a token or a quoted string of printable ASCII without backslash and
/// "=?". Blanks may stand around the ';'. Tokens that some readers misread are written in quotes.
/// @param text  The text.
/// @param length  Its length.
/// @param charset  Its charset.
/// @param mail_charset  The charset of the mail.
/// @param error  What went wrong.
/// @return Content-Type, Content-Transfer-Encoding, an empty line and the body: the end of a mail,
/// or one of the parts of i18n_mail_multipart().
QORVII18N_MAIL_EXPORT char* i18n_mail_text(const char* subtype, const char* text, size_t length,
                                           const char* charset, const char* mail_charset,
                                           i18n_mail_error_t* error);

/// A part with any bytes in base64, such as a file.
/// @param type  Two tokens of 1 to 127 characters with '/' between them, such as `application/pdf`;
/// parameters can follow as in i18n_mail_text(). Multipart and message, for which mail does not
/// allow base64, are not for this function, which does not check that.
/// @param data  The bytes; may be null when length is 0.
/// @param length  Their number.
/// @param error  What went wrong.
/// @return A part as from i18n_mail_text().
QORVII18N_MAIL_EXPORT char* i18n_mail_data(const char* type, const void* data, size_t length,
                                           i18n_mail_error_t* error);

/// The same for a file that readers offer to save.
/// @param type  As for i18n_mail_data(), but multipart and message are refused.
/// @param name  The name of the file, a text; no name is written when it is empty.
/// @param name_length  Its length.
/// @param charset  Its charset.
/// @param data  The bytes; may be null when length is 0.
/// @param length  Their number.
/// @param error  What went wrong.
/// @return A part as from i18n_mail_text().
QORVII18N_MAIL_EXPORT char* i18n_mail_attachment(const char* type, const char* name,
                                                 size_t name_length, const char* charset,
                                                 const void* data, size_t length,
                                                 i18n_mail_error_t* error);

/// The lines of a body in base64, for a file of any size: the part is what i18n_mail_data() or
/// i18n_mail_attachment() gives for a length of 0, and after it the lines of each piece of the
/// file.
/// @param out  Room for i18n_mail_base64_size(length) bytes, all of which are written, without a
/// NUL.
/// @param data  A piece of the bytes.
/// @param length  Its length; of all but the last piece it is a multiple of 57.
/// @return i18n_mail_base64_size(length).
QORVII18N_MAIL_EXPORT size_t i18n_mail_base64(char* out, const void* data, size_t length);

/// How many bytes i18n_mail_base64() writes.
/// @param length  Of the piece.
/// @return The number, or SIZE_MAX when it is too large for a size_t.
QORVII18N_MAIL_EXPORT size_t i18n_mail_base64_size(size_t length);

/// One part of several, such as a text and attachments. The boundary is one that no part has: equal
/// parts make equal results.
/// @param subtype  `mixed`, `alternative`, `related` or another token, with parameters as in
/// i18n_mail_text(), but no boundary.
/// @param count  The number of parts.
/// @param parts  Parts of this family, one at least, multiparts too. A caller may have put
/// fields in front of them, such as `Content-ID: <1@example.org>` with its CR LF: a part is ASCII
/// in lines of at most 998 bytes that all end with CR LF, and begins with a field.
/// @param error  What went wrong: I18N_MAIL_BAD_VALUE with item and position when a part is none.
/// @return A part as from i18n_mail_text().
QORVII18N_MAIL_EXPORT char* i18n_mail_multipart(const char* subtype, const char* const* parts,
                                                size_t count, i18n_mail_error_t* error);

/// A few English words about a status.
/// @param status  The status.
/// @return Constant text.
QORVII18N_MAIL_EXPORT const char* i18n_mail_status_text(i18n_mail_status_t status);

/// Releases a result.
/// @param result  A string or block of this family, or null.
QORVII18N_MAIL_EXPORT void i18n_mail_free(void* result);

#ifdef __cplusplus
}
#endif

#endif
