/// @file
/// C++ side of the library, namespace i18n_mime: encoding tables and transfer encoders.
///
/// An encoder takes converted text a chunk at a time and appends the encoded form to a buffer; one
/// encoder serves one text. The calling order is get_limit_byte_size(), then encode() for each
/// chunk (once at least, also for an empty text), then complete(). Lengths are in bytes.
///
/// Thread rules: an object belongs to one thread at a time. The two shared tables are read by every
/// quoted-printable encoder; adding to them while another thread encodes must be serialised.
#ifndef QORVII18N_I18N_MIME_HPP
#define QORVII18N_I18N_MIME_HPP

#if !defined(__cplusplus) || __cplusplus < 201703L
#error "qorvii18n/i18n_mime.hpp needs C++17 or later: compile with -std=c++17"
#endif

#include <string>

#include <qorvii18n/export.h>
#include <qorvii18n/i18n_mime.h>
#include <qorvii18n/i18n.hpp>

/// Gives the display name of an encoding.
/// @param encoding  The encoding.
/// @return Constant text; an error text for anything that is no encoding.
QORVII18N_EXPORT const char* get_encoding_str(i18n_mime_encoding_t encoding);

namespace i18n_mime {

/// Which byte values quoted-printable must escape: those whose entry in the table is 1. The table
/// is referred to, never owned; copies share it.
class QORVII18N_EXPORT QPEncodingTable {
 public:
  /// Refers to a table.
  /// @param table  256 entries.
  /// @param filled  Whether it holds its contents already; if not, it is filled with the rule for
  /// bodies.
  QPEncodingTable(char* table, bool filled);
  QPEncodingTable(const QPEncodingTable&);      ///< Copies.
  QPEncodingTable(QPEncodingTable&&) noexcept;  ///< Moves.
  QPEncodingTable& operator=(const QPEncodingTable&);
  QPEncodingTable& operator=(QPEncodingTable&&) noexcept;

  /// Marks a byte. A mark on a shared table holds for the whole process and cannot be taken back.
  /// @param byte  The byte to escape from now on.
  void set_encode_char(unsigned char byte);
  /// Marks every byte of a string, as set_encode_char() does.
  /// @param bytes  The bytes to escape from now on, NUL-terminated.
  void set_encode_chars(const char* bytes);

  /// Looks a byte up.
  /// @param byte  Any byte.
  /// @return Whether it must be escaped.
  bool should_encode(char byte);

  /// Counts what must be escaped.
  /// @param text  Any bytes.
  /// @return The number of bytes in text that must be escaped; stops at the largest int.
  int get_number_qp_encoded_bytes(const std::string& text);
  /// Measures the escaped form.
  /// @param text  Any bytes.
  /// @return Its length without line breaks; stops at the largest int.
  int get_byte_size_qp_encoded_str(const std::string& text);

 protected:
  char* table;  ///< 256 entries, borrowed
};

/// The table that all body encoders share.
class QORVII18N_EXPORT QPBodyEncodingTable : public QPEncodingTable {
 public:
  QPBodyEncodingTable();                                ///< Refers to the shared table.
  QPBodyEncodingTable(const QPBodyEncodingTable&);      ///< Copies.
  QPBodyEncodingTable(QPBodyEncodingTable&&) noexcept;  ///< Moves.
  QPBodyEncodingTable& operator=(const QPBodyEncodingTable&);
  QPBodyEncodingTable& operator=(QPBodyEncodingTable&&) noexcept;
};

/// The table that all header encoders share: also escapes space, question mark and underscore.
class QORVII18N_EXPORT QPHeaderEncodingTable : public QPEncodingTable {
 public:
  QPHeaderEncodingTable();                                  ///< Refers to the shared table.
  QPHeaderEncodingTable(const QPHeaderEncodingTable&);      ///< Copies.
  QPHeaderEncodingTable(QPHeaderEncodingTable&&) noexcept;  ///< Moves.
  QPHeaderEncodingTable& operator=(const QPHeaderEncodingTable&);
  QPHeaderEncodingTable& operator=(QPHeaderEncodingTable&&) noexcept;
};

/// Measures and folds encoded words: each line is one word, "=?charset?Q?" or "=?charset?B?" up to
/// "?=", of at most 75 bytes; lines are folded with CR LF TAB.
class QORVII18N_EXPORT HeaderLineCycle : public i18n::LineCycle {
 public:
  /// Makes a cycle for one header.
  /// @param charset  The name to write into each word, as it is. Not null.
  /// @param e_type  I18N_MIME_B64 makes "B" words, anything else "Q" words.
  HeaderLineCycle(const char* charset, i18n_mime_encoding_t e_type);
  HeaderLineCycle(const HeaderLineCycle&);  ///< Copies.
  HeaderLineCycle(HeaderLineCycle&&);       ///< Moves.
  HeaderLineCycle& operator=(const HeaderLineCycle&);
  HeaderLineCycle& operator=(HeaderLineCycle&&);
  ~HeaderLineCycle() override;
};

/// What all encoders have in common. Order of calls: get_limit_byte_size() once, encode() for each
/// chunk of the text, complete() once.
class QORVII18N_EXPORT GenericEncoder {
 public:
  /// Makes an encoder for one text.
  /// @param charset  The name of the mail charset, which is borrowed and must outlive the encoder.
  explicit GenericEncoder(const char* charset);
  GenericEncoder(const GenericEncoder&);  ///< Copies.
  GenericEncoder& operator=(const GenericEncoder&);
  virtual ~GenericEncoder();

  /// Appends the encoded form of a chunk.
  /// @param iter  The iterator that has the chunk. It is not advanced.
  /// @param buffer  Where the text goes.
  virtual void encode(i18n::CharsetToCharsetIterPrototype& iter,
                      i18n::StringBuffer<char>& buffer) = 0;
  /// Tells how long a chunk may be.
  /// @return The longest chunk, in bytes, that encode() takes; -1 when any will do.
  virtual int get_limit_byte_size() const;
  /// Appends what closes the text. Called once, after the last encode().
  /// @param buffer  Where the text goes.
  virtual void complete(i18n::StringBuffer<char>& buffer);
  /// Tells the encoding.
  /// @return I18N_MIME_QP or I18N_MIME_B64.
  virtual i18n_mime_encoding_t get_encoding_type() const = 0;

 protected:
  /// Points position and end at a chunk.
  /// @param chunk  The chunk, which must outlive the use of both.
  void set_ptrs(const std::string& chunk);

  const char* charset;            ///< the name of the mail charset, borrowed
  const unsigned char* position;  ///< the next byte of the chunk
  const unsigned char* end;       ///< the end of the chunk
};

/// Quoted-printable body text. Line breaks of the input are escaped; every line break of the output
/// is a soft one. A blank at the very end is escaped.
class QORVII18N_EXPORT QPBodyEncoder : public GenericEncoder, private QPBodyEncodingTable {
 public:
  /// Makes an encoder for one body.
  /// @param charset  Stored, and never read.
  explicit QPBodyEncoder(const char* charset = nullptr);
  QPBodyEncoder(const QPBodyEncoder&);  ///< Copies.
  QPBodyEncoder(QPBodyEncoder&&);       ///< Moves.
  QPBodyEncoder& operator=(const QPBodyEncoder&);
  QPBodyEncoder& operator=(QPBodyEncoder&&);
  ~QPBodyEncoder() override;

  void encode(i18n::CharsetToCharsetIterPrototype& iter, i18n::StringBuffer<char>& buffer) override;
  void complete(i18n::StringBuffer<char>& buffer) override;
  i18n_mime_encoding_t get_encoding_type() const override;

 private:
  i18n::LineCycle line_cycle_;
};

/// Base64 body text. The result does not depend on where the chunks were cut.
class QORVII18N_EXPORT B64BodyEncoder : public GenericEncoder {
 public:
  /// Makes an encoder for one body.
  /// @param charset  Stored, and never read.
  explicit B64BodyEncoder(const char* charset = nullptr);
  B64BodyEncoder(const B64BodyEncoder&);  ///< Copies.
  B64BodyEncoder(B64BodyEncoder&&);       ///< Moves.
  B64BodyEncoder& operator=(const B64BodyEncoder&);
  B64BodyEncoder& operator=(B64BodyEncoder&&);
  ~B64BodyEncoder() override;

  void encode(i18n::CharsetToCharsetIterPrototype& iter, i18n::StringBuffer<char>& buffer) override;
  void complete(i18n::StringBuffer<char>& buffer) override;
  i18n_mime_encoding_t get_encoding_type() const override;

 private:
  i18n::LineCycle line_cycle_;
  char carry_[3];  // a group that is not full yet
  int carry_size_;
};

/// "Q" encoded words. A word grows until the next character of the chunk does not fit; chunk
/// boundaries play no part, except that a character which the iterator split is two of them.
class QORVII18N_EXPORT QPHeaderEncoder : public GenericEncoder, private QPHeaderEncodingTable {
 public:
  /// Makes an encoder for one header.
  /// @param charset  The name to write into each word; not null, and borrowed.
  explicit QPHeaderEncoder(const char* charset);
  QPHeaderEncoder(const QPHeaderEncoder&);  ///< Copies.
  QPHeaderEncoder(QPHeaderEncoder&&);       ///< Moves.
  QPHeaderEncoder& operator=(const QPHeaderEncoder&);
  QPHeaderEncoder& operator=(QPHeaderEncoder&&);
  ~QPHeaderEncoder() override;

  void encode(i18n::CharsetToCharsetIterPrototype& iter, i18n::StringBuffer<char>& buffer) override;
  void complete(i18n::StringBuffer<char>& buffer) override;
  i18n_mime_encoding_t get_encoding_type() const override;

 private:
  HeaderLineCycle line_cycle_;
};

/// "B" encoded words, one for each chunk: a chunk longer than get_limit_byte_size() gives a word
/// that is too long. The limit is below 1 when the charset name leaves a word no room.
class QORVII18N_EXPORT B64HeaderEncoder : public GenericEncoder {
 public:
  /// Makes an encoder for one header.
  /// @param charset  The name to write into each word; not null, and borrowed.
  explicit B64HeaderEncoder(const char* charset);
  B64HeaderEncoder(const B64HeaderEncoder&);  ///< Copies.
  B64HeaderEncoder(B64HeaderEncoder&&);       ///< Moves.
  B64HeaderEncoder& operator=(const B64HeaderEncoder&);
  B64HeaderEncoder& operator=(B64HeaderEncoder&&);
  ~B64HeaderEncoder() override;

  void encode(i18n::CharsetToCharsetIterPrototype& iter, i18n::StringBuffer<char>& buffer) override;
  int get_limit_byte_size() const override;
  i18n_mime_encoding_t get_encoding_type() const override;

 private:
  HeaderLineCycle line_cycle_;
};

}  // namespace i18n_mime

#endif
