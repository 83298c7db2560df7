// The registry of charset handles.
#include "charset/charset_handle.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>

#include <qorviks.h>

#include "core/c_string.h"
#include "text/icu/converter.h"

namespace {

// Everything here is made at first use and kept until the process ends.
hash_str_t* registry;
i18n_charset_t* special_charsets[4];
i18n_charset_t** all_charsets;

i18n_charset_t* find_handle(const char* name) {
  uint64_t scratch;
  void** slot;
  if (hash_str_lookup(registry, name, &scratch, &slot) == 0) return nullptr;
  return static_cast<i18n_charset_t*>(*slot);
}

void enter_handle(const char* name, i18n_charset_t* charset) {
  uint64_t scratch;
  void** slot;
  hash_str_enter(registry, name, &scratch, &slot);
  *slot = charset;
}

const char* canonical_name(const UConverter* converter) {
  UErrorCode status = U_ZERO_ERROR;
  const char* const name = ucnv_getName(converter, &status);
  text::check_memory(status);
  return name;
}

// The standards' names are those of the name asked for, not of the converter found for it.
const char* preferred_name(const char* name, const UConverter* converter) {
  if (const char* const standard_name = text::find_standard_name(name)) return standard_name;
  if (const char* canonical = canonical_name(converter)) return canonical;
  return i18n::copy_c_string(name).release();
}

const char* special_name(int selector) {
  switch (selector) {
    case I18N_CHARSET_SPECIAL_DEFAULT:
      return ucnv_getDefaultName();
    case I18N_CHARSET_SPECIAL_UTF8:
      return "UTF-8";
    case I18N_CHARSET_SPECIAL_UTF16:
      return "UTF16_PlatformEndian";
    default:
      return "UTF32_PlatformEndian";
  }
}

}  // namespace

i18n_charset_t* i18n_charset_open(const char* name) {
  if (registry == nullptr) registry = hash_str_create(200, 8, 0);
  if (i18n_charset_t* known = find_handle(name)) return known;

  text::ConverterPtr converter = text::open_converter(name);
  if (!converter) return nullptr;
  const char* canonical = canonical_name(converter.get());
  const bool is_alias = canonical != nullptr && std::strcmp(canonical, name) != 0;
  if (is_alias) {
    if (i18n_charset_t* shared = find_handle(canonical)) {
      enter_handle(name, shared);
      return shared;
    }
  }

  text::make_strict(converter.get());
  auto charset = std::make_unique<i18n_charset_t>();
  charset->converter = converter.get();
  charset->name = preferred_name(name, converter.get());
  enter_handle(is_alias ? canonical : name, charset.get());
  static_cast<void>(converter.release());      // the handle owns it from here on,
  i18n_charset_t* handle = charset.release();  // and the registry the handle
  if (is_alias) enter_handle(name, handle);
  return handle;
}

i18n_charset_t* i18n_charset_open_special(int selector) {
  if (selector < 0 || selector >= static_cast<int>(std::size(special_charsets))) return nullptr;
  i18n_charset_t*& charset = special_charsets[selector];
  if (charset == nullptr) charset = i18n_charset_open(special_name(selector));
  return charset;
}

i18n_charset_t** i18n_charset_open_all() {
  if (all_charsets != nullptr) return all_charsets;
  const int32_t count = std::max(ucnv_countAvailable(), 0);
  auto charsets = std::make_unique<i18n_charset_t*[]>(static_cast<size_t>(count) + 1);
  all_charsets = charsets.get();  // for calls that the kernel services make meanwhile, too
  try {
    for (int32_t i = 0; i < count; ++i) charsets[i] = i18n_charset_open(ucnv_getAvailableName(i));
  } catch (...) {
    all_charsets = nullptr;
    throw;
  }
  return charsets.release();
}

const char* i18n_charset_get_name(const i18n_charset_t* charset) { return charset->name; }
