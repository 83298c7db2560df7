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
  const std::string word_begin =
      std::string("=?") + charset + (e_type == I18N_MIME_B64 ? "?B?" : "?Q?");
  prefix_length = static_cast<std::int32_t>(word_begin.size());
  prefix = std::make_unique<char[]>(word_begin.size() + 1);  // zero at the end
  word_begin.copy(prefix.get(), word_begin.size());
}

HeaderLineCycle::HeaderLineCycle(const HeaderLineCycle& other) = default;
HeaderLineCycle::HeaderLineCycle(HeaderLineCycle&& other) = default;
HeaderLineCycle& HeaderLineCycle::operator=(const HeaderLineCycle& other) = default;
HeaderLineCycle& HeaderLineCycle::operator=(HeaderLineCycle&& other) = default;
HeaderLineCycle::~HeaderLineCycle() = default;

}  // namespace i18n_mime
