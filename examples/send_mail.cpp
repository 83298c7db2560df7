// Writes a mail with a text and an attachment to those whose addresses were typed.
#include <qorvii18n/i18n_mail.h>

#include <ctime>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

// Owns a result of the library, which is never null: an exception says what is wrong with which
// argument.
template <class Type>
class Result {
 public:
  Result(Type* result, const i18n_mail_error_t& error, const std::string& what)
      : result_(result, i18n_mail_free) {
    if (result != nullptr) return;
    throw std::runtime_error(what + ", byte " + std::to_string(error.position + 1) + ": " +
                             i18n_mail_status_text(error.status));
  }
  Type* get() const { return result_.get(); }

 private:
  std::unique_ptr<Type, decltype(&i18n_mail_free)> result_;
};
template <class Type>
Result(Type*, const i18n_mail_error_t&, const std::string&) -> Result<Type>;

std::string read_file(const std::string& name) {
  std::ifstream stream(name, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + name);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string make_mail(const std::string& recipients, const std::string& file_name) {
  const std::string data = read_file(file_name);
  const std::string name = file_name.substr(file_name.rfind('/') + 1);
  const std::string subject = "Märchen von früher";
  const std::string text = "Guten Tag,\n\nanbei das Märchen.\n";
  const i18n_mail_address_t from = {"Wilhelm Müller", 15, "wilhelm@example.org"};

  i18n_mail_error_t error;
  size_t count;
  const Result to(
      i18n_mail_parse_addresses(recipients.data(), recipients.size(), nullptr, &count, &error),
      error, "recipients");
  const Result text_part(
      i18n_mail_text("plain", text.data(), text.size(), nullptr, nullptr, &error), error, "text");
  const Result attachment(i18n_mail_attachment("application/octet-stream", name.data(), name.size(),
                                               nullptr, data.data(), data.size(), &error),
                          error, "file name");
  const char* const parts[] = {text_part.get(), attachment.get()};

  std::string mail;
  const auto add = [&](char* piece, const std::string& what, const char* end) {
    mail.append(Result(piece, error, what).get()).append(end);
  };
  add(i18n_mail_date("Date", std::time(nullptr), 0, &error), "date", "\r\n");
  add(i18n_mail_message_id("example.org", &error), "domain", "\r\n");
  add(i18n_mail_addresses("From", &from, 1, nullptr, nullptr, &error), "sender", "\r\n");
  add(i18n_mail_addresses("To", to.get(), count, nullptr, nullptr, &error), "recipients", "\r\n");
  add(i18n_mail_header("Subject", subject.data(), subject.size(), nullptr, nullptr, &error),
      "subject", "\r\nMIME-Version: 1.0\r\n");
  add(i18n_mail_multipart("mixed", parts, 2, &error), "parts", "");
  return mail;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: send_mail RECIPIENTS FILE\n";
    return 2;
  }
  try {
    std::cout << make_mail(argv[1], argv[2]) << std::flush;
    return std::cout ? 0 : 1;
  } catch (const std::exception& failure) {
    std::cerr << "send_mail: " << failure.what() << "\n";
    return 1;
  }
}
