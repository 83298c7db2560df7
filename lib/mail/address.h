// Addresses as they are written in mail.
#pragma once

#include <string>
#include <string_view>

namespace mail {

enum class LocalParts {
  kAscii,
  kUtf8,  // for mail that is sent with SMTPUTF8
};

// The address with its domain in ASCII. Fails when it is none, or needs UTF-8 where that is not
// allowed.
std::string to_mail_address(std::string_view address, LocalParts local_parts);

}  // namespace mail
