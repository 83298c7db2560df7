// Domains as they are written in mail.
#pragma once

#include <string>
#include <string_view>

namespace mail {

// The domain in ASCII, or the literal that it is, of at most so many bytes. Fails when it is none:
// positions begin at `offset`, where the domain begins in the string that the caller knows.
std::string to_ascii_domain(std::string_view domain, size_t most, size_t offset);

}  // namespace mail
