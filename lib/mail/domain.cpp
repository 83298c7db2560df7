#include "mail/domain.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include <arpa/inet.h>
#include <strings.h>

#include <unicode/uidna.h>

#include "mail/call.h"
#include "mail/icu.h"
#include "mail/names.h"

namespace mail {

namespace {

constexpr size_t longest_label = 63;
constexpr size_t longest_domain = 255;

struct IdnaClose {
  void operator()(UIDNA* idna) const { uidna_close(idna); }
};

// What a function of ICU makes of a domain or label by UTS #46; empty when that refuses it.
template <class Function>
std::string process(Function function, std::string_view text) {
  // Punycode takes time with the square of its length. No character needs more than four bytes
  // here.
  if (text.size() > 4 * longest_domain) return {};
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UIDNA, IdnaClose> idna(
      uidna_openUTS46(UIDNA_NONTRANSITIONAL_TO_ASCII | UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ |
                          UIDNA_USE_STD3_RULES,
                      &status));
  UIDNAInfo info = UIDNA_INFO_INITIALIZER;
  std::array<char, longest_domain> ascii;
  const int32_t size =
      U_FAILURE(status)
          ? 0
          : function(idna.get(), text.data(), static_cast<int32_t>(text.size()), ascii.data(),
                     static_cast<int32_t>(ascii.size()), &info, &status);
  check_memory(status);
  if (U_FAILURE(status) || info.errors != 0) return {};
  return {ascii.data(), static_cast<size_t>(size)};
}

bool is_digit(char c) { return '0' <= c && c <= '9'; }
bool is_of_label(char c) { return is_alphanumeric(c) || is_one_of(c, "-_"); }

// Where a text is no label of ASCII characters; null when it is one.
std::optional<size_t> find_fault_in_label(std::string_view label) {
  for (size_t i = 0; i < label.size(); ++i) {
    if (i == longest_label || !is_of_label(label[i]) || (i == 0 && label[i] == '-')) return i;
  }
  if (label.empty()) return 0;
  if (label.back() == '-') return label.size() - 1;
  const auto is_same = [](char a, char b) { return (a | 0x20) == b; };
  constexpr std::string_view prefix = "xn--";
  const bool is_encoded = label.size() >= prefix.size() &&
                          std::ranges::equal(label.substr(0, prefix.size()), prefix, is_same);
  if (is_encoded && process(uidna_labelToASCII_UTF8, label).empty()) return 0;
  return std::nullopt;
}

std::optional<size_t> find_fault(std::string_view domain) {
  size_t labels = 0, numbers = 0;
  for (size_t begin = 0, end; begin <= domain.size(); begin = end + 1) {
    end = std::min(domain.find('.', begin), domain.size());
    const std::string_view label = domain.substr(begin, end - begin);
    if (const auto fault = find_fault_in_label(label)) return begin + *fault;
    ++labels;
    numbers += std::ranges::all_of(label, is_digit) ? 1 : 0;
  }
  // An address of the network would be a literal.
  return labels == 4 && numbers == 4 ? std::optional<size_t>(0) : std::nullopt;
}

// Fails unless it is an address of the Internet in brackets.
std::string check_literal(std::string_view domain, size_t offset) {
  const size_t close = std::min(domain.find(']'), domain.size());
  if (close == domain.size()) fail(I18N_MAIL_BAD_ADDRESS, offset + close);
  const std::string content(domain.substr(1, close - 1));
  constexpr std::string_view tag = "IPv6:";
  const bool is_ipv6 = strncasecmp(content.c_str(), tag.data(), tag.size()) == 0;
  in6_addr address;
  const int valid = is_ipv6 ? inet_pton(AF_INET6, content.c_str() + tag.size(), &address)
                            : inet_pton(AF_INET, content.c_str(), &address);
  if (valid != 1) fail(I18N_MAIL_BAD_ADDRESS, offset);
  if (close + 1 < domain.size()) fail(I18N_MAIL_BAD_ADDRESS, offset + close + 1);
  return std::string(domain);
}

}  // namespace

std::string to_ascii_domain(std::string_view domain, size_t most, size_t offset) {
  if (domain.starts_with('[')) return check_literal(domain, offset);
  if (is_ascii(domain)) {
    if (const auto fault = find_fault(domain)) fail(I18N_MAIL_BAD_ADDRESS, offset + *fault);
    if (domain.size() > most) fail(I18N_MAIL_BAD_ADDRESS, offset + most);
    return std::string(domain);
  }
  const size_t invalid = find_invalid(domain);
  if (invalid < domain.size()) fail(I18N_MAIL_BAD_ADDRESS, offset + invalid);
  std::string ascii = process(uidna_nameToASCII_UTF8, domain);
  if (find_fault(ascii) || ascii.size() > most) fail(I18N_MAIL_BAD_ADDRESS, offset);
  return ascii;
}

}  // namespace mail
