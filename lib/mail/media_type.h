// Media types with their parameters, as callers write them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mail {

struct MediaType {
  std::string_view name;
  std::vector<std::string> parameters;  // as they are written
};

enum class TypeNames { kSubtype, kTypeAndSubtype };

// Borrows the name. Fails when it is no media type, or has a parameter that the library writes.
MediaType read_media_type(std::string_view text, TypeNames names, std::string_view own_parameter);

// The field, the library's own parameter first, for those who look no further; or without it.
std::string make_content_type(std::string_view prefix, const MediaType& type,
                              std::string_view own_parameter);

// Whether two names are the same, whatever the case of letters.
bool is_same_name(std::string_view one, std::string_view other);

}  // namespace mail
