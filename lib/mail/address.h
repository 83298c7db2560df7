// Addresses as they are written in mail.
#pragma once

#include <string>
#include <string_view>

namespace mail {

// The address with its domain in ASCII. Fails when it is none.
std::string to_ascii_address(std::string_view address);

}  // namespace mail
