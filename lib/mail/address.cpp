#include "mail/address.h"

#include "mail/call.h"
#include "mail/domain.h"
#include "mail/names.h"

namespace mail {

namespace {

constexpr size_t longest_address = 254;
constexpr size_t longest_local_part = 64;

// Fails unless a local part stands at the front, with '@' after it. Returns where that is.
size_t find_at(std::string_view address) {
  bool in_atom = false;
  for (size_t i = 0; i < address.size(); ++i) {
    const char c = address[i];
    if (in_atom && c == '@') return i;
    const bool is_good = is_of_atom(c) || (in_atom && c == '.');
    // Programs take '-' at the beginning for an option, and servers refuse it for that. Some
    // readers decode what looks like an encoded word, and take what comes out for an address.
    const bool is_risky = (i == 0 && c == '-') || address.substr(i).starts_with("=?");
    if (i == longest_local_part || !is_good || is_risky) fail(I18N_MAIL_BAD_ADDRESS, i);
    in_atom = c != '.';
  }
  fail(I18N_MAIL_BAD_ADDRESS, address.size());
}

}  // namespace

std::string to_ascii_address(std::string_view address) {
  const size_t begin = find_at(address) + 1;
  return std::string(address.substr(0, begin)) +
         to_ascii_domain(address.substr(begin), longest_address - begin, begin);
}

}  // namespace mail
