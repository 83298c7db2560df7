#include "text/tables/charset.h"

#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <string_view>

#include "text/icu/converter.h"
#include "text/icu/converter_types.h"
#include "text/tables/table_maker.h"

namespace text {

namespace {

// Lists that only grow, at the front.
template <class Value>
struct Link {
  Value value;
  const Link* next = nullptr;
};
template <class Value>
using List = std::atomic<const Link<Value>*>;

// The first value of which is_wanted is true, null when there is none.
template <class Value, class IsWanted>
const Value* find(const List<Value>& list, IsWanted is_wanted) {
  const Link<Value>* link = list.load(std::memory_order_acquire);
  while (link != nullptr && !is_wanted(link->value)) link = link->next;
  return link != nullptr ? &link->value : nullptr;
}

template <class Value>
void add(List<Value>& list, Value value) {
  auto* const link = new Link<Value>{std::move(value)};
  link->next = list.load(std::memory_order_relaxed);
  while (!list.compare_exchange_weak(link->next, link, std::memory_order_release)) {
  }
}

struct Spelling {
  std::string name;
  const Charset* charset;
};

constexpr size_t most_spellings = 1024;  // ICU has some 1,500 names, and programs use few
constinit List<Spelling> spellings[256];
constinit std::atomic<size_t> spelling_count = 0;
constinit List<const Charset*> charsets;

// Two threads may each add the same charset: then it has two tables.
const Charset* find_or_add(const char* name, UConverterType type) {
  const auto* const known = find(
      charsets, [name](const Charset* charset) { return std::strcmp(charset->name(), name) == 0; });
  if (known != nullptr) return *known;
  auto charset = std::make_unique<Charset>(name, type);
  add<const Charset*>(charsets, charset.get());
  return charset.release();
}

const Charset* learn(std::string_view name, List<Spelling>& list) {
  if (spelling_count.load(std::memory_order_relaxed) >= most_spellings) return nullptr;
  try {
    const ConverterPtr converter = open_converter(name.data());
    if (!converter) return nullptr;
    UErrorCode status = U_ZERO_ERROR;
    const char* const canonical = ucnv_getName(converter.get(), &status);
    if (canonical == nullptr) return nullptr;
    const Charset* const charset = find_or_add(canonical, ucnv_getType(converter.get()));
    add(list, Spelling{std::string(name), charset});
    spelling_count.fetch_add(1, std::memory_order_relaxed);
    return charset;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace

Charset::Charset(const char* name, UConverterType type)
    : name_(name), type_(type), can_have_table_(is_plain(type)) {}

// Tables of charsets with more than 256 characters take as long to make as some hundred KiB of text
// take to convert, so they have to be earned.
const Table* Charset::make(size_t size) const {
  constexpr size_t enough = size_t{1} << 20;
  constexpr size_t size_of_a_call = 512;  // what a call costs beside
  const size_t demand = demand_.fetch_add(size + size_of_a_call, std::memory_order_relaxed);
  if (!is_single_byte(type_) && demand + size < enough) return nullptr;
  try {
    std::unique_ptr<const Table> made = make_table(name());
    if (!made) can_have_table_.store(false, std::memory_order_relaxed);
    const Table* table = nullptr;
    if (!made || !table_.compare_exchange_strong(table, made.get(), std::memory_order_acq_rel)) {
      return table;
    }
    return made.release();
  } catch (const std::bad_alloc&) {
    demand_.store(0, std::memory_order_relaxed);
    return nullptr;
  }
}

const Charset* find_charset(const char* name) {
  if (name == nullptr || *name == '\0') return nullptr;
  size_t size = 0, hash = 0;
  for (; name[size] != '\0'; ++size) {
    if (name[size] == ',' || size + 1 == UCNV_MAX_CONVERTER_NAME_LENGTH) return nullptr;
    hash = 31 * hash + static_cast<unsigned char>(name[size]);
  }
  const std::string_view spelling(name, size);
  List<Spelling>& list = spellings[hash % std::size(spellings)];
  const Spelling* const known =
      find(list, [spelling](const Spelling& one) { return one.name == spelling; });
  return known != nullptr ? known->charset : learn(spelling, list);
}

}  // namespace text
