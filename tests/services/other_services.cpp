// Another libqorviks, unlike ours in all that its interface leaves open: lists for tables, a
// scratch word that is written to, other results, and messages that its recorder keeps.
#include <qorviks.h>

#include <algorithm>
#include <cstdlib>
#include <list>
#include <string>
#include <utility>

struct hash_str_t {
  std::list<std::pair<std::string, void*>> entries;
};

extern "C" {

int lookups;

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

int imsg_sprintf(
    char* /*buffer*/, int /*kind*/, const void* /*catalog_or_format*/, int /*index*/, ...) {
  return -5;
}
}
