/// @file
/// C++ side of the library, namespace i18n: strict converters, error state and line folding.
///
/// Programs that make mails use i18n_mail.h or i18n_mime.h. The classes here are what the encoders
/// of i18n_mime.hpp are made of. The buffer that they write to is the library's own, so a program
/// can ask them for sizes and rules but cannot make them write.
///
/// Thread rules: an object belongs to one thread at a time.
#ifndef QORVII18N_I18N_HPP
#define QORVII18N_I18N_HPP

#if !defined(__cplusplus) || __cplusplus < 201703L
#error "qorvii18n/i18n.hpp needs C++17 or later: compile with -std=c++17"
#endif

#include <cstdint>
#include <memory>
#include <string>

#include <qorvii18n/export.h>

struct UConverter;

namespace i18n {

// Inside the library: the output buffer, and the source of converted chunks.
template <class T>
class StringBuffer;
class CharsetToCharsetIterPrototype;

/// Opens an ICU converter without fallback mappings that stops at the first character it cannot
/// convert, in both directions.
/// @param name  A converter name or alias.
/// @return The converter, which the caller closes with ucnv_close(), or null when ICU cannot open
/// the name; the kernel services then print which.
QORVII18N_EXPORT UConverter* open_ucnv_converter(const char* name);

/// An error flag that stays set once it is set. Base of the classes that can fail.
class QORVII18N_EXPORT Error {
 public:
  Error& operator=(const Error&);
  Error& operator=(Error&&) noexcept;

  void set_error();       ///< Sets the flag.
  bool is_ok() const;     ///< Tells success. @return Whether the flag is clear.
  bool is_error() const;  ///< Tells failure. @return Whether the flag is set.

 protected:
  Error();              ///< Makes a clear flag.
  Error(const Error&);  ///< Copies the flag.
  ~Error() = default;

 private:
  bool flag;
};

/// The ICU status of a conversion that goes chunk by chunk. A full target is no failure: it means
/// that there is more to come.
class QORVII18N_EXPORT UcnvErrorHandler {
 public:
  UcnvErrorHandler();                         ///< Starts with success.
  UcnvErrorHandler(const UcnvErrorHandler&);  ///< Copies the status.
  UcnvErrorHandler& operator=(const UcnvErrorHandler&);
  UcnvErrorHandler& operator=(UcnvErrorHandler&&) noexcept;

  void ucnv_set_ok();             ///< Sets the status to success.
  bool ucnv_is_ok() const;        ///< Tells success so far. @return False after a failure only.
  bool has_next() const;          ///< Tells more to come. @return Whether the target was full.
  bool ucnv_is_total_ok() const;  ///< Tells the end. @return Success, and the target was not full.

 protected:
  std::int32_t status;  ///< a UErrorCode
};

/// A pair of indices; end -1 is an open end.
class QORVII18N_EXPORT BegEnd {
 public:
  BegEnd();  ///< Starts with both at 0.
  /// Stores two indices.
  /// @param begin_index  The first.
  /// @param end_index  The second; -1 for an open end.
  BegEnd(int begin_index, int end_index);
  BegEnd(const BegEnd&);  ///< Copies both indices.
  BegEnd& operator=(const BegEnd&);

  /// Moves both indices; an open end stays open.
  /// @param n  How far, forwards or backwards.
  void add(int n);
  /// Measures the pair.
  /// @return end - begin, which means nothing when the end is open.
  int size() const;

  std::int32_t begin;  ///< the first index
  std::int32_t end;    ///< the index after the last one
};

/// Takes an input text.
template <class T>
class InStrSetter {
 public:
  /// Starts over with a text.
  /// @param text  The text, of which the object keeps its own copy.
  virtual void set_in_str(const std::basic_string<T>& text) = 0;

 protected:
  InStrSetter() = default;                    ///< For derived classes only.
  InStrSetter(const InStrSetter&) = default;  ///< For derived classes only.
  InStrSetter& operator=(const InStrSetter&) = default;
  ~InStrSetter() = default;
};

/// Measures the lines that an encoder writes and folds them.
///
/// The encoder announces each piece that must not be split with move_line() and appends it right
/// after; the cycle first writes the suffix, the line break and the next prefix when the piece and
/// a suffix would not fit any more. Lengths are in bytes. A line break counts into the line that it
/// begins, so every line after the first has that much less room. The error flag is never set: ask
/// is_legal().
class QORVII18N_EXPORT LineCycle : public Error {
 public:
  /// Makes a cycle for one text. Reports an assertion failure when the strings leave no room.
  /// @param max_length  The longest that a line may be.
  /// @param prefix  What opens each line. It is copied, as the other two are; null stands for an
  /// empty string.
  /// @param suffix  What closes each line.
  /// @param line_break  What stands between two lines.
  LineCycle(int max_length, const char* prefix, const char* suffix, const char* line_break);
  LineCycle(const LineCycle&);  ///< Copies the state, with strings of its own.
  LineCycle& operator=(const LineCycle&);
  virtual ~LineCycle();

  /// Tells whether lines can have content.
  /// @return Whether the three strings together are shorter than a line.
  bool is_legal();
  /// Measures the room for content.
  /// @return The bytes of content that fit on any line but the first.
  int get_num_bytes_avail() const;

  /// Announces a piece that the caller appends next. One that no line has room for is reported as
  /// an assertion failure and placed all the same.
  /// @param buffer  Where the lines go.
  /// @param num_bytes  The length of the piece.
  void move_line(StringBuffer<char>& buffer, int num_bytes);
  /// Begins a line, whatever the length of the last one so far.
  /// @param buffer  Where the lines go.
  void start_cycle(StringBuffer<char>& buffer);
  /// Ends the line with the suffix.
  /// @param buffer  Where the lines go.
  void close_cycle(StringBuffer<char>& buffer);

 protected:
  std::int32_t current_length;         ///< of the line being written; 0 when none is open
  std::int32_t max_length;             ///< of any line
  bool first_line;                     ///< no line has been begun yet
  std::unique_ptr<char[]> prefix;      ///< NUL-terminated, as the other strings are
  std::int32_t prefix_length;          ///< in bytes
  std::unique_ptr<char[]> suffix;      ///< closes each line
  std::int32_t suffix_length;          ///< in bytes
  std::unique_ptr<char[]> line_break;  ///< stands between two lines
  std::int32_t line_break_length;      ///< in bytes
};

}  // namespace i18n

#endif
