// i18n_mail_parse_addresses(): the addresses in what a person typed.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include <unicode/utf8.h>

#include "mail/address.h"
#include "mail/call.h"
#include "mail/names.h"
#include "mail/text.h"

namespace mail {

namespace {

struct Item {
  std::string name;
  std::string address;
};

bool is_of_word(char c) { return !U8_IS_SINGLE(c) || is_of_atom(c) || c == '.'; }
bool is_of_domain(char c) { return !is_one_of(c, " ,;<>("); }

// list   = [entry] *(("," / ";") [entry])
// entry  = address / *word "<" address ">" / 1*word ":" [entry] *("," [entry]) ";"
// address = word "@" domain
// A word is an atom with dots, or a quoted string. Blanks and comments may stand anywhere but
// inside a word or domain. Line ends and TABs must have been made blanks.
class ListReader {
 public:
  explicit ListReader(std::string_view list) : list_(list) {}

  // Fails at the first mistake.
  std::vector<Item> read() {
    for (skip(); index_ < list_.size(); skip()) {
      if (is_at(';')) in_group_ = false;
      if (is_at(';') || is_at(',')) {
        ++index_;
      } else {
        read_entry();
      }
    }
    if (in_group_) fail_here();
    return std::move(items_);
  }

 private:
  struct Word {
    size_t begin;
    size_t end;
  };

  bool is_at(char c) const { return index_ < list_.size() && list_[index_] == c; }
  std::string_view get(Word word) const { return list_.substr(word.begin, word.end - word.begin); }
  [[noreturn]] void fail_here() const { fail_at(index_); }
  [[noreturn]] void fail_at(size_t index) const {
    throw Failure{I18N_MAIL_BAD_ADDRESS, index, items_.size()};
  }
  void take(char c) {
    if (!is_at(c)) fail_here();
    ++index_;
  }

  void skip() {
    while (is_at(' ') || is_at('(')) {
      if (is_at('(')) {
        skip_comment();
      } else {
        ++index_;
      }
    }
  }
  void skip_comment() {
    for (size_t depth = 0; index_ < list_.size();) {
      if (is_at('(')) ++depth;
      if (is_at(')')) --depth;
      index_ += is_at('\\') ? 2 : 1;
      if (depth == 0) return;
    }
    index_ = list_.size();
    fail_here();
  }

  void read_entry() {
    std::vector<Word> words;
    for (; is_at('"') || (index_ < list_.size() && is_of_word(list_[index_])); skip()) {
      words.push_back(read_word());
    }
    if (is_at(':') && !words.empty() && !in_group_) {
      in_group_ = true;
      ++index_;
      return;
    }
    if (is_at('@') && words.size() == 1) {
      items_.push_back({"", read_address(words[0])});
    } else {
      take('<');
      skip();
      std::string address = read_address(read_word());
      take('>');
      items_.push_back({join(words), std::move(address)});
    }
    skip();
    if (index_ < list_.size() && !is_at(',') && !is_at(';')) fail_here();
  }

  Word read_word() {
    const size_t begin = index_;
    if (is_at('"')) {
      for (++index_; !is_at('"'); index_ += is_at('\\') ? 2 : 1) {
        if (index_ >= list_.size()) fail_at(list_.size());
      }
      ++index_;
    } else {
      while (index_ < list_.size() && is_of_word(list_[index_])) ++index_;
    }
    return {begin, index_};
  }

  // What follows the local part, which was read.
  std::string read_address(Word local_part) {
    skip();
    take('@');
    skip();
    const size_t domain = index_;
    if (is_at('[')) {
      index_ = std::min(list_.find(']', index_), list_.size() - 1) + 1;
    }
    while (index_ < list_.size() && is_of_domain(list_[index_])) ++index_;
    std::string address(get(local_part));
    address.append("@").append(get({domain, index_}));
    try {
      to_mail_address(address, LocalParts::kUtf8);
    } catch (const Failure& failure) {
      const size_t size = get(local_part).size();
      fail_at(failure.position <= size ? local_part.begin + failure.position
                                       : domain + failure.position - size - 1);
    }
    skip();
    return address;
  }

  // The name that words are. Where blanks and comments stood is one blank.
  std::string join(const std::vector<Word>& words) const {
    std::string name;
    for (const Word& word : words) {
      if (&word != &words.front()) name += ' ';
      std::string_view text = get(word);
      if (!text.starts_with('"')) {
        name += text;
        continue;
      }
      text = text.substr(1, text.size() - 2);
      for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\') ++i;
        name += text[i];
      }
    }
    return name;
  }

  std::string_view list_;
  size_t index_ = 0;
  bool in_group_ = false;
  std::vector<Item> items_;
};

using Block = std::unique_ptr<i18n_mail_address_t, Free>;

// The items and, behind them, their strings.
Block make_block(const std::vector<Item>& items) {
  size_t size = sizeof(i18n_mail_address_t);
  for (const Item& item : items) {
    size += sizeof(i18n_mail_address_t) + item.name.size() + 1 + item.address.size() + 1;
  }
  Block block(static_cast<i18n_mail_address_t*>(std::malloc(size)));
  if (block == nullptr) throw std::bad_alloc();
  i18n_mail_address_t* next = block.get();
  char* strings = reinterpret_cast<char*>(next + items.size());
  const auto put = [&strings](const std::string& text) {
    const char* const begin = strings;
    std::memcpy(strings, text.c_str(), text.size() + 1);
    strings += text.size() + 1;
    return begin;
  };
  for (const Item& item : items) *next++ = {put(item.name), item.name.size(), put(item.address)};
  return block;
}

std::vector<Item> parse(const char* bytes, size_t length, const char* charset) {
  const SourceCharset source(charset);
  const Text text(source, bytes, length, find_forbidden_in_list);
  std::string list(text.utf8());
  std::ranges::replace_if(
      list, [](char c) { return is_one_of(c, "\t\r\n"); }, ' ');
  try {
    return ListReader(list).read();
  } catch (Failure& failure) {
    failure.position = text.find_position(failure.position);
    throw;
  }
}

}  // namespace

}  // namespace mail

i18n_mail_address_t* i18n_mail_parse_addresses(const char* list, size_t length, const char* charset,
                                               size_t* count, i18n_mail_error_t* error) {
  mail::Block block;
  *count = 0;
  mail::run(error, [&] {
    const std::vector<mail::Item> items = mail::parse(list, length, charset);
    block = mail::make_block(items);
    *count = items.size();
  });
  return block.release();
}
