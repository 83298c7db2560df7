// i18n_mail_data(), i18n_mail_attachment(): parts with any bytes.
#include "mail/call.h"
#include "mail/media_type.h"
#include "mail/names.h"
#include "mail/parameter.h"
#include "mail/part.h"
#include "mail/text.h"

namespace mail {

namespace {

Result make_part(const MediaType& type, std::string_view fields, std::string_view data) {
  const std::string head = make_part_head(make_content_type("", type, "").append(fields), "base64");
  Result part = allocate_result(head.size() + measure_base64_lines(data.size()));
  *put_base64_lines(put(part.get(), head), data) = '\0';
  return part;
}

MediaType read_type(const char* type) {
  return read_media_type(view(type), TypeNames::kTypeAndSubtype, "");
}

Result make_data_part(const char* type, std::string_view data) {
  return make_part(read_type(type), "", data);
}

Result make_attachment(const char* type_name, const char* name, size_t length, const char* charset,
                       std::string_view data) {
  const MediaType type = read_type(type_name);
  const std::string_view family = type.name.substr(0, type.name.find('/'));
  if (is_same_name(family, "message") || is_same_name(family, "multipart")) {
    fail(I18N_MAIL_BAD_NAME);
  }
  const SourceCharset source(charset);
  const Text text(source, name, length, find_forbidden_in_field);
  std::string disposition = "\r\nContent-Disposition: attachment";
  if (!text.utf8().empty()) disposition += write_parameter("filename", text.utf8());
  return make_part(type, disposition, data);
}

}  // namespace

}  // namespace mail

char* i18n_mail_data(const char* type, const void* data, size_t length, i18n_mail_error_t* error) {
  return mail::call(error, [&] {
    return mail::make_data_part(type, {static_cast<const char*>(data), length});
  });
}

char* i18n_mail_attachment(const char* type, const char* name, size_t name_length,
                           const char* charset, const void* data, size_t length,
                           i18n_mail_error_t* error) {
  return mail::call(error, [&] {
    return mail::make_attachment(type, name, name_length, charset,
                                 {static_cast<const char*>(data), length});
  });
}
