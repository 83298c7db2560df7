#include "mail/address.h"

#include <algorithm>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "mail/call.h"
#include "mail/domain.h"
#include "mail/names.h"

namespace mail {

namespace {

constexpr size_t longest_address = 254;
constexpr size_t longest_local_part = 64;

bool is_ascii(UChar32 character) { return 0 <= character && character < 0x80; }

// Reads the local part at the front of an address. Whatever is wrong with it fails where it stands.
class LocalPart {
 public:
  explicit LocalPart(std::string_view address) : address_(address) {}

  // The index of the '@' after it.
  size_t read() {
    if (address_.starts_with('"')) {
      read_quoted();
    } else {
      read_atoms();
    }
    if (index_ == address_.size() || address_[index_] != '@') fail_here();
    return index_;
  }

 private:
  void read_atoms() {
    bool in_atom = false;
    for (; index_ < address_.size() && !(in_atom && address_[index_] == '@');) {
      const bool is_dot = address_[index_] == '.';
      if (is_dot && in_atom) {
        take();
      } else {
        take_content([](UChar32 c) { return !is_ascii(c) || is_of_atom(static_cast<char>(c)); });
      }
      in_atom = !is_dot;
    }
  }

  void read_quoted() {
    take();
    for (bool is_empty = true; index_ < address_.size(); is_empty = false) {
      if (address_[index_] == '"' && !is_empty) return take();
      const bool is_escaped = address_[index_] == '\\';
      if (is_escaped) take();
      take_content([is_escaped](UChar32 c) {
        return !is_ascii(c) ||
               (is_printable(static_cast<char>(c)) && (is_escaped || !is_one_of(c, "\"\\")));
      });
    }
  }

  // The next character of what the local part stands for.
  template <class IsGood>
  void take_content(IsGood is_good) {
    size_t next = index_;
    UChar32 character = 0;
    if (next < address_.size()) U8_NEXT(address_.data(), next, address_.size(), character);
    if (next == index_ || character < 0 || !is_good(character)) fail_here();
    if (!is_ascii(character) && (u_iscntrl(character) || u_isUWhiteSpace(character))) fail_here();
    // Programs take '-' at the beginning for an option, and servers refuse it for that. Some
    // readers decode what looks like an encoded word, and take what comes out for an address.
    if (last_ == 0 && character == '-') fail_here();
    if (last_ == '=' && character == '?') fail(I18N_MAIL_BAD_ADDRESS, last_index_);
    last_ = character;
    last_index_ = index_;
    take(next - index_);
  }

  void take(size_t size = 1) {
    if (index_ + size > longest_local_part) fail(I18N_MAIL_BAD_ADDRESS, longest_local_part);
    index_ += size;
  }

  [[noreturn]] void fail_here() const { fail(I18N_MAIL_BAD_ADDRESS, index_); }

  std::string_view address_;
  size_t index_ = 0;
  UChar32 last_ = 0;  // of the content
  size_t last_index_ = 0;
};

}  // namespace

std::string to_mail_address(std::string_view address, LocalParts local_parts) {
  const size_t begin = LocalPart(address).read() + 1;
  const std::string_view local_part = address.substr(0, begin);
  std::string domain = to_ascii_domain(address.substr(begin), longest_address - begin, begin);
  const auto high = std::ranges::find_if(local_part, [](char c) { return !U8_IS_SINGLE(c); });
  if (high != local_part.end() && local_parts == LocalParts::kAscii) {
    fail(I18N_MAIL_NEEDS_SMTPUTF8, static_cast<size_t>(high - local_part.begin()));
  }
  return domain.insert(0, local_part);
}

}  // namespace mail
