#include "front/charset_finder.h"

#include <atomic>
#include <mutex>

#include <unicode/ucnv.h>

#include "charset/diagnostics.h"
#include "text/icu/converter.h"

namespace {

// In which charsets text of another one is customarily mailed.
constexpr struct {
  const char* source;
  const char* body;
  const char* header;
} mail_charsets[] = {
    {"shift_jis", "ISO-2022-JP", "UTF-8"},
};

// Both are made at first use and kept until the process ends.
hash_str_t* body_charsets;
hash_str_t* header_charsets;

// No table has nothing.
const char* find_charset(hash_str_t* table, const char* normalised_name) {
  if (table == nullptr) return nullptr;
  uint64_t scratch;
  void** slot = nullptr;
  hash_str_lookup(table, normalised_name, &scratch, &slot);
  return slot != nullptr ? static_cast<const char*>(*slot) : nullptr;
}

void enter_charset(hash_str_t* table, const char* normalised_name, const char* charset) {
  if (find_charset(table, normalised_name) != nullptr) return;  // another spelling of one alias
  i18n::CString value = i18n::copy_c_string(charset);
  uint64_t scratch;
  void** slot;
  hash_str_enter(table, normalised_name, &scratch, &slot);
  *slot = value.release();
}

void add_charset_aliases(const char* charset, const char* value, hash_str_t* table) {
  UErrorCode status = U_ZERO_ERROR;
  const uint16_t count = ucnv_countAliases(charset, &status);
  text::check_memory(status);
  if (U_FAILURE(status)) {
    i18n::print_message(i18n::Message::kInvalidCharsetAlias, charset);
    return;
  }
  for (uint16_t i = 0; i < count; ++i) {
    status = U_ZERO_ERROR;
    const char* alias = ucnv_getAlias(charset, i, &status);
    text::check_memory(status);
    if (U_FAILURE(status)) continue;
    enter_charset(table, normalise_charset_name(alias).get(), value);
  }
}

// When memory runs out meanwhile, the next use goes on where this one stopped.
void make_tables() {
  if (body_charsets == nullptr) body_charsets = hash_str_create(200, 8, 0);
  if (header_charsets == nullptr) header_charsets = hash_str_create(200, 8, 0);
  for (const auto& [source, body, header] : mail_charsets) {
    add_charset_aliases(source, body, body_charsets);
    add_charset_aliases(source, header, header_charsets);
  }
}

std::atomic<bool> has_tables;
bool is_making_tables;  // on the thread that has the mutex

std::recursive_mutex& get_mutex() {
  static std::recursive_mutex& mutex = *new std::recursive_mutex;  // used until the process is gone
  return mutex;
}

char to_ascii_lower(char byte) {
  return 'A' <= byte && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

}  // namespace

i18n::CString normalise_charset_name(const char* name) {
  i18n::CString normalised = i18n::allocate_c_string(std::strlen(name) + 1);
  char* out = normalised.get();
  for (; *name != '\0'; ++name) {
    if (*name != '-') *out++ = to_ascii_lower(*name);
  }
  *out = '\0';
  return normalised;
}

// Threads that come first at once wait for the one that makes the tables. A call that the kernel
// services make on that thread meanwhile does without what is not there yet. After an exception the
// next call tries again.
void init_charset_tables() {
  if (has_tables.load(std::memory_order_acquire)) return;
  const std::lock_guard lock(get_mutex());
  if (has_tables.load(std::memory_order_relaxed) || is_making_tables) return;
  struct Making {
    Making() { is_making_tables = true; }
    ~Making() { is_making_tables = false; }
  } const making;
  make_tables();
  has_tables.store(true, std::memory_order_release);
}

CharsetFinder::CharsetFinder(const char* from, Use use) : to_charset(nullptr) {
  init_charset_tables();
  table = use == Use::kBody ? body_charsets : header_charsets;
  from_charset = from != nullptr ? from : ucnv_getDefaultName();
  if (from_charset != nullptr) to_charset = get_to_charset_name(from_charset);
}

const char* CharsetFinder::get_to_charset_name(const char* name) const {
  return find_charset(table, normalise_charset_name(name).get());
}
