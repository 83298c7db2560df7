// Leaves all one-shot conversions to ICU, in builds that have no fast road.
#include "charset/direct.h"

namespace i18n {

CString convert_directly(const i18n_charset_t&, std::string_view, const i18n_charset_t&, size_t,
                         size_t*) {
  return nullptr;
}

std::optional<size_t> convert_directly(const i18n_charset_t&, std::string_view,
                                       const i18n_charset_t&, char*, size_t) {
  return std::nullopt;
}

}  // namespace i18n
