// Parameters of a field's value.
#pragma once

#include <string>
#include <string_view>

namespace mail {

// With its separator in front. The value is UTF-8.
std::string write_parameter(std::string_view name, std::string_view value);

}  // namespace mail
