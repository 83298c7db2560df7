// C++ side of the library, namespace i18n_mime: encoding tables and transfer encoders.
//
// An encoder takes converted text a chunk at a time and appends the encoded form to a buffer; one
// encoder serves one text. The calling order is get_limit_byte_size(), then encode() for each chunk
// (once at least, also for an empty text), then complete(). Lengths are in bytes.
//
// Thread rules: an object belongs to one thread at a time. The two shared tables are read by every
// quoted-printable encoder; adding to them while another thread encodes must be serialised.
#ifndef QORVII18N_I18N_MIME_HPP
#define QORVII18N_I18N_MIME_HPP

#include <string>

#include <qorvii18n/export.h>
#include <qorvii18n/i18n_mime.h>
#include <qorvii18n/i18n.hpp>

// The display name of an encoding, constant text; an error text for anything else.
QORVII18N_EXPORT const char* get_encoding_str(i18n_mime_encoding_t encoding);

namespace i18n_mime {

// Which byte values quoted-printable must escape: those whose entry in the table is 1. The table is
// referred to, never owned; copies share it.
class QORVII18N_EXPORT QPEncodingTable {
 public:
  // table has 256 entries. Unless it holds its contents already, it is filled with the rule for
  // bodies.
  QPEncodingTable(char* table, bool filled);
  QPEncodingTable(const QPEncodingTable& other);
  QPEncodingTable(QPEncodingTable&& other) noexcept;
  QPEncodingTable& operator=(const QPEncodingTable& other);
  QPEncodingTable& operator=(QPEncodingTable&& other) noexcept;

  // Mark one byte, or every byte of a NUL-terminated string. Marks on a shared table hold for the
  // whole process and cannot be taken back.
  void set_encode_char(unsigned char byte);
  void set_encode_chars(const char* bytes);

  bool should_encode(char byte);

  // How many bytes of text must be escaped, and the length of its escaped form without line breaks.
  // Both stop at the largest int.
  int get_number_qp_encoded_bytes(const std::string& text);
  int get_byte_size_qp_encoded_str(const std::string& text);

 protected:
  char* table;
};

// The table that all body encoders share.
class QORVII18N_EXPORT QPBodyEncodingTable : public QPEncodingTable {
 public:
  QPBodyEncodingTable();
  QPBodyEncodingTable(const QPBodyEncodingTable& other);
  QPBodyEncodingTable(QPBodyEncodingTable&& other) noexcept;
  QPBodyEncodingTable& operator=(const QPBodyEncodingTable& other);
  QPBodyEncodingTable& operator=(QPBodyEncodingTable&& other) noexcept;
};

// The table that all header encoders share: also escapes space, question mark and underscore.
class QORVII18N_EXPORT QPHeaderEncodingTable : public QPEncodingTable {
 public:
  QPHeaderEncodingTable();
  QPHeaderEncodingTable(const QPHeaderEncodingTable& other);
  QPHeaderEncodingTable(QPHeaderEncodingTable&& other) noexcept;
  QPHeaderEncodingTable& operator=(const QPHeaderEncodingTable& other);
  QPHeaderEncodingTable& operator=(QPHeaderEncodingTable&& other) noexcept;
};

// Measures and folds encoded words: each line is one word, "=?charset?Q?" or "=?charset?B?" up to
// "?=", of at most 75 bytes; lines are folded with CR LF TAB.
class QORVII18N_EXPORT HeaderLineCycle : public i18n::LineCycle {
 public:
  // charset must not be null and is written as it is. Any encoding but base64 makes "Q" words.
  HeaderLineCycle(const char* charset, i18n_mime_encoding_t e_type);
  HeaderLineCycle(const HeaderLineCycle& other);
  HeaderLineCycle(HeaderLineCycle&& other);
  HeaderLineCycle& operator=(const HeaderLineCycle& other);
  HeaderLineCycle& operator=(HeaderLineCycle&& other);
  ~HeaderLineCycle() override;
};

// What all encoders have in common. The charset name is borrowed and must outlive the encoder.
class QORVII18N_EXPORT GenericEncoder {
 public:
  explicit GenericEncoder(const char* charset);
  GenericEncoder(const GenericEncoder& other);
  GenericEncoder& operator=(const GenericEncoder& other);
  virtual ~GenericEncoder();

  // Appends the encoded form of the iterator's current chunk. Does not advance the iterator.
  virtual void encode(i18n::CharsetToCharsetIterPrototype& iter,
                      i18n::StringBuffer<char>& buffer) = 0;
  // The longest chunk, in bytes, that encode() takes; -1 when any will do.
  virtual int get_limit_byte_size() const;
  // Appends what closes the output. Called once, after the last encode().
  virtual void complete(i18n::StringBuffer<char>& buffer);
  virtual i18n_mime_encoding_t get_encoding_type() const = 0;

 protected:
  void set_ptrs(const std::string& chunk);  // chunk must outlive the use of position and end

  const char* charset;
  const unsigned char* position;
  const unsigned char* end;
};

// Quoted-printable body text. Line breaks of the input are escaped; every line break of the output
// is a soft one. A blank at the very end is escaped.
class QORVII18N_EXPORT QPBodyEncoder : public GenericEncoder, private QPBodyEncodingTable {
 public:
  explicit QPBodyEncoder(const char* charset = nullptr);
  QPBodyEncoder(const QPBodyEncoder& other);
  QPBodyEncoder(QPBodyEncoder&& other);
  QPBodyEncoder& operator=(const QPBodyEncoder& other);
  QPBodyEncoder& operator=(QPBodyEncoder&& other);
  ~QPBodyEncoder() override;

  void encode(i18n::CharsetToCharsetIterPrototype& iter, i18n::StringBuffer<char>& buffer) override;
  void complete(i18n::StringBuffer<char>& buffer) override;
  i18n_mime_encoding_t get_encoding_type() const override;

 private:
  i18n::LineCycle line_cycle;
};

// Base64 body text. The result does not depend on where the chunks were cut.
class QORVII18N_EXPORT B64BodyEncoder : public GenericEncoder {
 public:
  explicit B64BodyEncoder(const char* charset = nullptr);
  B64BodyEncoder(const B64BodyEncoder& other);
  B64BodyEncoder(B64BodyEncoder&& other);
  B64BodyEncoder& operator=(const B64BodyEncoder& other);
  B64BodyEncoder& operator=(B64BodyEncoder&& other);
  ~B64BodyEncoder() override;

  void encode(i18n::CharsetToCharsetIterPrototype& iter, i18n::StringBuffer<char>& buffer) override;
  void complete(i18n::StringBuffer<char>& buffer) override;
  i18n_mime_encoding_t get_encoding_type() const override;

 private:
  i18n::LineCycle line_cycle;
  char carry[3];  // a group that is not full yet
  int carry_size;
};

// "Q" encoded words. A word grows until the next character of the chunk does not fit; chunk
// boundaries play no part, except that a character which the iterator split is two of them.
class QORVII18N_EXPORT QPHeaderEncoder : public GenericEncoder, private QPHeaderEncodingTable {
 public:
  explicit QPHeaderEncoder(const char* charset);
  QPHeaderEncoder(const QPHeaderEncoder& other);
  QPHeaderEncoder(QPHeaderEncoder&& other);
  QPHeaderEncoder& operator=(const QPHeaderEncoder& other);
  QPHeaderEncoder& operator=(QPHeaderEncoder&& other);
  ~QPHeaderEncoder() override;

  void encode(i18n::CharsetToCharsetIterPrototype& iter, i18n::StringBuffer<char>& buffer) override;
  void complete(i18n::StringBuffer<char>& buffer) override;
  i18n_mime_encoding_t get_encoding_type() const override;

 private:
  HeaderLineCycle line_cycle;
};

// "B" encoded words, one for each chunk: a chunk longer than get_limit_byte_size() gives a word
// that is too long. The limit is below 1 when the charset name leaves a word no room.
class QORVII18N_EXPORT B64HeaderEncoder : public GenericEncoder {
 public:
  explicit B64HeaderEncoder(const char* charset);
  B64HeaderEncoder(const B64HeaderEncoder& other);
  B64HeaderEncoder(B64HeaderEncoder&& other);
  B64HeaderEncoder& operator=(const B64HeaderEncoder& other);
  B64HeaderEncoder& operator=(B64HeaderEncoder&& other);
  ~B64HeaderEncoder() override;

  void encode(i18n::CharsetToCharsetIterPrototype& iter, i18n::StringBuffer<char>& buffer) override;
  int get_limit_byte_size() const override;
  i18n_mime_encoding_t get_encoding_type() const override;

 private:
  HeaderLineCycle line_cycle;
};

}  // namespace i18n_mime

#endif
