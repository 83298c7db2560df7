// Another libqorviks, unlike ours in all that its interface leaves open: lists for tables, a
// scratch word that is written to, other results, and messages that it keeps.
#include <qorviks.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <list>
#include <string>
#include <utility>

struct hash_str_t {
  std::list<std::pair<std::string, void*>> entries;
};

namespace {

std::string recorded, taken;
int lookups;

void record(const std::string& report) { recorded += (recorded.empty() ? "" : "|") + report; }

const char* find_format(const void* catalog_or_format, int index) {
  return index == -1 ? static_cast<const char*>(catalog_or_format)
                     : static_cast<const imsg_catalog_t*>(catalog_or_format)->texts[index];
}

}  // namespace

extern "C" {

const char* take_other_diagnostics() {
  taken = std::exchange(recorded, {});
  return taken.c_str();
}

int count_other_lookups() { return lookups; }

hash_str_t* hash_str_create(int size, int value_size, int flags) {
  if (size != 200 || value_size != 8 || flags != 0) std::abort();
  return new hash_str_t;
}

int hash_str_lookup(hash_str_t* table, const char* key, uint64_t* scratch, void*** slot) {
  ++lookups;
  *scratch = 0xdeadbeef;
  const auto found = std::find_if(table->entries.begin(), table->entries.end(),
      [key](const auto& entry) { return entry.first == key; });
  if (found == table->entries.end()) return 0;
  *slot = &found->second;
  return -2;
}

int hash_str_enter(hash_str_t* table, const char* key, uint64_t* scratch, void*** slot) {
  if (hash_str_lookup(table, key, scratch, slot) == 0) {
    *slot = &table->entries.emplace_front(key, nullptr).second;
  }
  return -3;
}

int imsg_print(int kind, const void* catalog_or_format, int index, ...) {
  char text[1024];
  std::va_list args;
  va_start(args, index);
  std::vsnprintf(text, sizeof text, find_format(catalog_or_format, index), args);
  va_end(args);
  record(std::to_string(kind) + ": " + text);
  return -4;
}

int imsg_sprintf(
    char* /*buffer*/, int /*kind*/, const void* /*catalog_or_format*/, int /*index*/, ...) {
  return -5;
}

void pfm_assert_fail(const char* expression, const char* source, int /*line*/) {
  record(std::string(expression) + " @ " + source);
}
}
