// i18n_mail_data(): a part with any bytes.
#include "mail/call.h"
#include "mail/names.h"
#include "mail/part.h"

namespace mail {

namespace {

std::string make_data_part(std::string_view type, std::string_view data) {
  const size_t slash = std::min(type.find('/'), type.size());
  check_name(type.substr(0, slash), longest_type_name, is_of_token);
  if (slash == type.size()) fail(I18N_MAIL_BAD_NAME, slash);
  check_name(type.substr(slash + 1), longest_type_name, is_of_token, slash + 1);
  std::string part = make_part_head(type, "base64");
  append_base64_lines(part, data);
  return part;
}

}  // namespace

}  // namespace mail

char* i18n_mail_data(const char* type, const void* data, size_t length, i18n_mail_error_t* error) {
  return mail::call(error, [&] {
    return mail::make_data_part(mail::view(type), {static_cast<const char*>(data), length});
  });
}
