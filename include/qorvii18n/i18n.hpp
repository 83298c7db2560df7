// C++ side of the library, namespace i18n: strict converters, error state and line folding.
//
// Programs that encode mail use i18n_mime.h. The classes here are what the encoders of
// i18n_mime.hpp are made of. The buffer that they write to is the library's own, so a program can
// ask them for sizes and rules but cannot make them write.
//
// Thread rules: an object belongs to one thread at a time.
#ifndef QORVII18N_I18N_HPP
#define QORVII18N_I18N_HPP

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

// A new ICU converter without fallback mappings that stops at the first character it cannot
// convert, in both directions. The caller closes it with ucnv_close(). Null when ICU cannot open
// the name; the kernel services then print which.
QORVII18N_EXPORT UConverter* open_ucnv_converter(const char* name);

// An error flag that stays set once it is set. Base of the classes that can fail.
class QORVII18N_EXPORT Error {
 public:
  Error& operator=(const Error& other);
  Error& operator=(Error&& other) noexcept;

  void set_error();
  bool is_ok() const;
  bool is_error() const;

 protected:
  Error();
  Error(const Error& other);
  ~Error() = default;

 private:
  bool flag;
};

// The ICU status of a conversion that goes chunk by chunk. A full target is no failure: it means
// that there is more to come.
class QORVII18N_EXPORT UcnvErrorHandler {
 public:
  UcnvErrorHandler();
  UcnvErrorHandler(const UcnvErrorHandler& other);
  UcnvErrorHandler& operator=(const UcnvErrorHandler& other);
  UcnvErrorHandler& operator=(UcnvErrorHandler&& other) noexcept;

  void ucnv_set_ok();
  bool ucnv_is_ok() const;        // success, a warning, or a full target
  bool has_next() const;          // a full target
  bool ucnv_is_total_ok() const;  // success or a warning

 protected:
  std::int32_t status;  // a UErrorCode
};

// A pair of indices; end -1 is an open end.
class QORVII18N_EXPORT BegEnd {
 public:
  BegEnd();
  BegEnd(int begin_index, int end_index);
  BegEnd(const BegEnd& other);
  BegEnd& operator=(const BegEnd& other);

  void add(int n);   // moves both; an open end stays open
  int size() const;  // end - begin, which means nothing when the end is open

  std::int32_t begin;
  std::int32_t end;
};

// Takes an input text. The object keeps its own copy and starts over at its beginning.
template <class T>
class InStrSetter {
 public:
  virtual void set_in_str(const std::basic_string<T>& text) = 0;

 protected:
  InStrSetter() = default;
  InStrSetter(const InStrSetter&) = default;
  InStrSetter& operator=(const InStrSetter&) = default;
  ~InStrSetter() = default;
};

// Measures the lines that an encoder writes and folds them.
//
// The encoder announces each piece that must not be split with move_line() and appends it right
// after; the cycle first writes the suffix, the line break and the next prefix when the piece and a
// suffix would not fit any more. Lengths are in bytes. A line break counts into the line that it
// begins, so every line after the first has that much less room. The error flag is never set: ask
// is_legal().
class QORVII18N_EXPORT LineCycle : public Error {
 public:
  // A null string stands for an empty one; the strings are copied. Reports an assertion failure
  // when they leave no room in max_length.
  LineCycle(int max_length, const char* prefix, const char* suffix, const char* line_break);
  LineCycle(const LineCycle& other);
  LineCycle& operator=(const LineCycle& other);
  virtual ~LineCycle();

  bool is_legal() const;            // the strings leave room in max_length
  int get_num_bytes_avail() const;  // room for content on any line but the first

  // Announces num_bytes that the caller appends next. A piece that no line has room for is reported
  // as an assertion failure and placed all the same.
  void move_line(StringBuffer<char>& buffer, int num_bytes);
  void start_cycle(StringBuffer<char>& buffer);  // begins a line whatever its length so far
  void close_cycle(StringBuffer<char>& buffer);  // ends the line with the suffix

 protected:
  std::int32_t current_length;
  std::int32_t max_length;
  bool first_line;
  // NUL-terminated.
  std::unique_ptr<char[]> prefix;
  std::int32_t prefix_length;
  std::unique_ptr<char[]> suffix;
  std::int32_t suffix_length;
  std::unique_ptr<char[]> line_break;
  std::int32_t line_break_length;
};

}  // namespace i18n

#endif
