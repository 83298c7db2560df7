#include <qorviks.h>
#include <qorvii18n/i18n_mime.hpp>

#include "i18n_mime_encoding/line_limits.h"

namespace i18n_mime {

namespace {
constexpr const char* unit_name = "lib/i18n/i18n_mime_encoding";
}  // namespace

HeaderLineCycle::HeaderLineCycle(const char* charset, i18n_mime_encoding_t e_type)
    : LineCycle(max_word_line, nullptr, word_end, word_line_break) {
  if (e_type == I18N_MIME_NONE) pfm_assert_fail("e_type != I18N_MIME_NONE", unit_name, __LINE__);
  set_prefix(std::string("=?") + charset + (e_type == I18N_MIME_B64 ? "?B?" : "?Q?"));
}

HeaderLineCycle::HeaderLineCycle(const HeaderLineCycle& other) = default;
HeaderLineCycle::HeaderLineCycle(HeaderLineCycle&& other) = default;
HeaderLineCycle& HeaderLineCycle::operator=(const HeaderLineCycle& other) = default;
HeaderLineCycle& HeaderLineCycle::operator=(HeaderLineCycle&& other) = default;
HeaderLineCycle::~HeaderLineCycle() = default;

}  // namespace i18n_mime
