// The charset that a text is written in.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "text/icu/converter.h"

namespace text {

class Target {
 public:
  enum class Result {
    all,      // all units were taken
    more,     // there was more output than room
    lacking,  // the charset lacks a character; what was written may be more than is before it
  };

  // Nothing when ICU does not know the charset, or when it is compound text. This and the other
  // functions that make or reset one throw std::bad_alloc when memory runs out.
  static std::optional<Target> open(const char* charset);

  // Writes units, advances both pointers past what was taken and written.
  Result write(const char16_t*& units, const char16_t* units_end, char*& bytes, char* end);
  // The end of the text: back to the initial state. What then remains is reset().
  Result finish(char*& bytes, char* end);

  // After Result::lacking: how many of the units that were taken are not written. The character is
  // the first of them.
  size_t count_unwritten() const;

  // The index of the first character that would be written but be read back as another, in units
  // that follow those of the last call.
  size_t find_one_way(std::u16string_view units);

  // One in the same state, and one in the initial state.
  Target copy() const;
  Target copy_anew() const;

  void reset();

  // Whether the units written so far mean nothing to those that come. Never true of charsets with a
  // state.
  bool is_between_characters() const;

 private:
  Target(std::string charset, ConverterPtr converter);

  size_t find_unfit_for_iscii(std::u16string_view units);

  UConverterType type() const { return ucnv_getType(converter_.get()); }

  std::string charset_;
  ConverterPtr converter_;
  ConverterPtr probe_;  // for find_one_way(), once that is needed
  // Of the units that find_one_way() saw; in ISCII, these matter.
  bool is_after_virama_ = false;
  bool is_after_cr_ = false;  // and no LF since
};

}  // namespace text
