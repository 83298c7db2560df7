// How a call ends: with a result from malloc, or with an error that says what and where.
#pragma once

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

#include <qorvii18n/i18n_mail.h>

#include "text/icu/converter.h"

namespace mail {

// Thrown inside the library only.
struct Failure {
  i18n_mail_status_t status = I18N_MAIL_OK;
  size_t position = 0;
  size_t item = 0;
};

[[noreturn]] inline void fail(i18n_mail_status_t status, size_t position = 0) {
  throw Failure{status, position};
}

using text::check_memory;

struct Free {
  void operator()(void* block) const { std::free(block); }
};
// NUL-terminated.
using Result = std::unique_ptr<char, Free>;

// Room for so many characters and the NUL.
inline Result allocate_result(size_t size) {
  Result result(static_cast<char*>(std::malloc(size + 1)));
  if (!result) throw std::bad_alloc();
  return result;
}

inline Result to_result(Result result) { return result; }
inline Result to_result(const std::string& text) {
  Result result = allocate_result(text.size());
  std::memcpy(result.get(), text.c_str(), text.size() + 1);
  return result;
}

// Says in the error how it went.
template <class Run>
void run(i18n_mail_error_t* error, Run run) noexcept {
  Failure failure;
  try {
    run();
  } catch (const Failure& caught) {
    failure = caught;
  } catch (const std::bad_alloc&) {
    failure.status = I18N_MAIL_OUT_OF_MEMORY;
  } catch (const std::length_error&) {
    failure.status = I18N_MAIL_OUT_OF_MEMORY;
  }
  if (error != nullptr) *error = {failure.status, failure.item, failure.position};
}

template <class Make>
char* call(i18n_mail_error_t* error, Make make) noexcept {
  Result result;
  run(error, [&] { result = to_result(make()); });
  return result.release();
}

}  // namespace mail
