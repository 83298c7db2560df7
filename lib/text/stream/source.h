// The charset that a text comes from.
#pragma once

#include <optional>
#include <string>

#include "text/icu/converter.h"

namespace text {

class Source {
 public:
  enum class Result {
    all,         // all bytes were taken
    more,        // there were more units than room
    invalid,     // bytes that are not of the charset came after the units
    incomplete,  // the text ended inside a character
  };

  // Nothing when ICU does not know the charset, or when it is compound text. This and the other
  // functions that make or reset one throw std::bad_alloc when memory runs out.
  static std::optional<Source> open(const char* charset);

  // Reads bytes, advances both pointers past what was taken and made.
  Result read(const char*& bytes, const char* end, char16_t*& units, const char16_t* units_end);
  // The end of the text; what then remains is reset().
  Result finish(char16_t*& units, const char16_t* units_end);

  // One in the same state, and one in the initial state.
  Source copy() const;
  Source copy_anew() const;

  void reset();

  // Whether the bytes read so far mean nothing to those that come. Never true of charsets with a
  // state.
  bool is_between_characters() const;
  // Whether they end inside a character. Never true of charsets with a state.
  bool is_inside_character() const;

 private:
  Source(std::string charset, ConverterPtr converter);

  bool is_cut();

  UConverterType type() const { return ucnv_getType(converter_.get()); }

  std::string charset_;
  ConverterPtr converter_;
};

}  // namespace text
