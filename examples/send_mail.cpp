// Writes a mail to two people with a text and an attachment, with the line ends of mail.
#include <qorvii18n/i18n_mail.h>

#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

using Result = std::unique_ptr<char, decltype(&i18n_mail_free)>;

// A result of the library, or an exception that says what is wrong with which argument.
std::string check(char* text, const i18n_mail_error_t& error, const std::string& what) {
  const Result result(text, i18n_mail_free);
  if (result == nullptr) {
    throw std::runtime_error(what + ", byte " + std::to_string(error.position + 1) + ": " +
                             i18n_mail_status_text(error.status));
  }
  return result.get();
}

std::string read_file(const std::string& name) {
  std::ifstream stream(name, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + name);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string make_mail(const std::string& file_name) {
  const std::string data = read_file(file_name);
  const std::string name = file_name.substr(file_name.rfind('/') + 1);
  const std::string subject = "Märchen von früher";
  const std::string text = "Guten Tag,\n\nanbei das Märchen.\n";
  const i18n_mail_address_t from = {"Wilhelm Müller", 15, "wilhelm@example.org"};
  const i18n_mail_address_t to[] = {{"Grimm, Jacob", 12, "jacob@example.org"},
                                    {"夏目漱石", 12, "soseki@bücher.example"}};
  // The boundary must not begin a line of a part: no encoding writes "=_", and 7bit text is ours.
  const std::string boundary = "=_part";

  i18n_mail_error_t error;
  std::string mail =
      check(i18n_mail_addresses("From", &from, 1, nullptr, nullptr, &error), error, "sender") +
      "\r\n" +
      check(i18n_mail_addresses("To", to, 2, nullptr, nullptr, &error), error, "receivers") +
      "\r\n" +
      check(i18n_mail_header("Subject", subject.data(), subject.size(), nullptr, nullptr, &error),
            error, "subject") +
      "\r\nMIME-Version: 1.0\r\n"
      "Content-Type: multipart/mixed; boundary=\"" +
      boundary + "\"\r\n\r\n--" + boundary + "\r\n";
  mail += check(i18n_mail_text("plain", text.data(), text.size(), nullptr, nullptr, &error), error,
                "text");
  mail += "\r\n--" + boundary + "\r\nContent-Disposition: attachment";
  mail += check(i18n_mail_parameter("filename", name.data(), name.size(), nullptr, &error), error,
                "file name");
  mail += "\r\n";
  mail += check(i18n_mail_data("application/octet-stream", data.data(), data.size(), &error), error,
                "file");
  return mail + "\r\n--" + boundary + "--\r\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: send_mail FILE\n";
    return 2;
  }
  try {
    std::cout << make_mail(argv[1]) << std::flush;
    return std::cout ? 0 : 1;
  } catch (const std::exception& failure) {
    std::cerr << "send_mail: " << failure.what() << "\n";
    return 1;
  }
}
