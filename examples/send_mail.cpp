// Writes a mail with a text and an attachment to those whose addresses a person typed.
#include <qorvii18n/i18n_mail.h>

#include <ctime>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

i18n_mail_error_t error;

// Owns a result of the library. When there is none, an exception says what is wrong, and with what.
template <class Type>
std::unique_ptr<Type, decltype(&i18n_mail_free)> own(Type* result, const std::string& what) {
  if (result != nullptr) return {result, i18n_mail_free};
  throw std::runtime_error(what + ", byte " + std::to_string(error.position + 1) + ": " +
                           i18n_mail_status_text(error.status));
}

std::string make_mail(std::string_view recipients) {
  const std::string_view subject = "Märchen von früher",
                         text = "Guten Tag,\n\nanbei das Märchen.\n", name = "Märchen.txt",
                         data = "Es war einmal ein König.\n";
  const i18n_mail_address_t from = {"Wilhelm Müller", 15, "wilhelm@example.org"};
  size_t count;
  const auto to =
      own(i18n_mail_parse_addresses(recipients.data(), recipients.size(), nullptr, &count, &error),
          "recipients");
  const auto text_part =
      own(i18n_mail_text("plain", text.data(), text.size(), nullptr, nullptr, &error), "text");
  const auto attachment =
      own(i18n_mail_attachment("text/plain; charset=UTF-8", name.data(), name.size(), nullptr,
                               data.data(), data.size(), &error),
          "attachment");
  const char* const parts[] = {text_part.get(), attachment.get()};

  std::string mail;
  const auto add = [&](const char* what, char* field) {
    mail.append(own(field, what).get()).append("\r\n");
  };
  add("date", i18n_mail_date("Date", std::time(nullptr), 0, &error));
  add("domain", i18n_mail_message_id("example.org", &error));
  add("sender", i18n_mail_addresses("From", &from, 1, nullptr, nullptr, &error));
  add("recipients", i18n_mail_addresses("To", to.get(), count, nullptr, nullptr, &error));
  add("subject",
      i18n_mail_header("Subject", subject.data(), subject.size(), nullptr, nullptr, &error));
  mail += "MIME-Version: 1.0\r\n";
  return mail + own(i18n_mail_multipart("mixed", parts, 2, &error), "parts").get();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: send_mail RECIPIENTS\n";
    return 2;
  }
  try {
    std::cout << make_mail(argv[1]) << std::flush;
    return std::cout ? 0 : 1;
  } catch (const std::exception& failure) {
    std::cerr << "send_mail: " << failure.what() << '\n';
    return 1;
  }
}
