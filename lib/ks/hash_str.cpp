// String-keyed tables of pointers.
#include <string>
#include <unordered_map>

#include "qorviks.h"

// An unordered_map never moves its elements, so the addresses of values can be handed out.
struct hash_str_t {
  std::unordered_map<std::string, void*> values;
};

[[gnu::weak]] hash_str_t* hash_str_create(int /*size*/, int /*value_size*/, int /*flags*/) {
  return new hash_str_t;
}

[[gnu::weak]] int hash_str_lookup(hash_str_t* table, const char* key, uint64_t* /*scratch*/,
                                  void*** slot) {
  auto entry = table->values.find(key);
  if (entry == table->values.end()) return 0;
  *slot = &entry->second;
  return 1;
}

[[gnu::weak]] int hash_str_enter(hash_str_t* table, const char* key, uint64_t* /*scratch*/,
                                 void*** slot) {
  auto [entry, added] = table->values.try_emplace(key, nullptr);
  *slot = &entry->second;
  return added ? 0 : 1;
}
