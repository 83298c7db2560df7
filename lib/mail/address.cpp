#include "mail/address.h"

#include <algorithm>
#include <memory>
#include <optional>

#include <unicode/uidna.h>

#include "mail/call.h"
#include "mail/names.h"
#include "mail/unicode.h"

namespace mail {

namespace {

constexpr size_t longest_address = 254;

struct IdnaClose {
  void operator()(UIDNA* idna) const { uidna_close(idna); }
};

// Where a text is no dot-atom: the offending character, or the end when an atom is missing there.
std::optional<size_t> find_fault(std::string_view text) {
  bool in_atom = false;
  for (size_t i = 0; i < text.size(); ++i) {
    if (!is_of_atom(text[i]) && !(in_atom && text[i] == '.')) return i;
    in_atom = text[i] != '.';
  }
  return in_atom ? std::nullopt : std::optional(text.size());
}

// A domain outside ASCII by UTS #46; empty when that refuses it.
std::string to_ascii_domain(std::string_view domain) {
  // Punycode takes time with the square of its length. No character needs more than four bytes
  // here.
  if (domain.size() > 4 * longest_address) return {};
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UIDNA, IdnaClose> idna(
      uidna_openUTS46(UIDNA_NONTRANSITIONAL_TO_ASCII | UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ |
                          UIDNA_USE_STD3_RULES,
                      &status));
  UIDNAInfo info = UIDNA_INFO_INITIALIZER;
  char ascii[longest_address];
  const int32_t size =
      U_FAILURE(status)
          ? 0
          : uidna_nameToASCII_UTF8(idna.get(), domain.data(), static_cast<int32_t>(domain.size()),
                                   ascii, sizeof ascii, &info, &status);
  check_memory(status);
  if (U_FAILURE(status) || info.errors != 0) return {};
  return {ascii, static_cast<size_t>(size)};
}

}  // namespace

std::string to_ascii_address(std::string_view address) {
  const size_t at = std::min(address.find('@'), address.size());
  if (const auto fault = find_fault(address.substr(0, at))) fail(I18N_MAIL_BAD_ADDRESS, *fault);
  if (at == address.size()) fail(I18N_MAIL_BAD_ADDRESS, at);
  const size_t begin = at + 1;
  const std::string_view domain = address.substr(begin);
  if (is_ascii(domain)) {
    if (const auto fault = find_fault(domain)) fail(I18N_MAIL_BAD_ADDRESS, begin + *fault);
    if (address.size() > longest_address) fail(I18N_MAIL_BAD_ADDRESS, longest_address);
    return std::string(address);
  }
  const size_t invalid = find_invalid(domain);
  if (invalid < domain.size()) fail(I18N_MAIL_BAD_ADDRESS, begin + invalid);
  const std::string ascii = to_ascii_domain(domain);
  if (find_fault(ascii) || begin + ascii.size() > longest_address) {
    fail(I18N_MAIL_BAD_ADDRESS, begin);
  }
  return std::string(address.substr(0, begin)) + ascii;
}

}  // namespace mail
