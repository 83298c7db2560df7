// What test files share.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <qorvii18n/i18n_mime.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

// The function of ICU's that a test program puts one of its own in place of. ICU's headers define
// its name as another one, which is the one to look for.
#define REAL(function) find_replaced(function, NAME_OF(function))
#define NAME_OF(function) #function
template <class Function>
Function* find_replaced(Function* /*replacement*/, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// The charset that ICU reports as the process's default. ICU may be built to always say UTF-8.
void set_default_charset(const char* name);

// What the library printed, and the checks in it that failed, since the last call: "kind: text" of
// each message and "expression @ source" of each check, with "|" between one and the next.
std::string take_diagnostics();

// The messages about bytes that cannot be read, and about a character that the target lacks.
std::string input_failure(const char* bytes, int position);
std::string target_failure(const char* bytes, int position, const char* unit);

// Takes over a string of the library.
inline std::string take(char* text) {
  const std::unique_ptr<char, void (*)(void*)> owned(text, i18n_mime_free);
  return text;
}

inline std::string repeat(const std::string& text, int times) {
  std::string repeated;
  while (times-- > 0) repeated += text;
  return repeated;
}

inline std::string x(int count) { return repeat("x", count); }
