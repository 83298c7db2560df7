// One conversion and encoding of a whole text.
#pragma once

#include <string>
#include <string_view>

#include <qorvii18n/i18n.hpp>

#include "core/in_str_keeper.h"
#include "core/string_buffer.h"

namespace i18n_mime {

// Calling order: construct, give the input once, process, read the result. convert() does all of
// it. The input is processed once, however often that is asked for; after an error nothing happens
// any more.
class Processor : public i18n::InStrKeeper<char>, public i18n::Error {
 public:
  using InStrKeeper::set_in_str;
  void set_in_str(const char* input) { set_in_str(std::string(input)); }
  void set_in_str(const char* input, size_t size) { set_in_str(std::string(input, size)); }
  void set_in_str(const char* begin, const char* end) { set_in_str(std::string(begin, end)); }

  virtual ~Processor();
  virtual void process() = 0;

  // Both process the input and return a new copy of the output, a NUL-terminated string from
  // malloc, or null after an error.
  char* get_result();
  char* convert(const char* input);

 protected:
  Processor();

  // An exception sets the error on its way out: what was done so far is no result.
  template <class Work>
  void attempt(Work work) {
    try {
      work();
    } catch (...) {
      set_error();
      throw;
    }
  }

  i18n::StringBuffer<char> buffer;
};

}  // namespace i18n_mime
