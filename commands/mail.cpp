// qorvii18n-mail: writes a mail to standard output, for a program that sends it.
#include <algorithm>
#include <ctime>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <getopt.h>

#include <qorvii18n/i18n_mail.h>
#include <qorvii18n/i18n_text.h>

#include "command.h"
#include "types.h"

namespace {

using command::Failure;

constexpr const char* help =
    R"(usage: qorvii18n-mail --from LIST --to LIST --subject TEXT [OPTION...] [TEXT-FILE]

Writes a mail to standard output, with the text from TEXT-FILE or standard input:

    qorvii18n-mail --from me@example.org --to 'Jürgen <j@köln.example>' --subject Grüße letter.txt |
      sendmail -t

      --from LIST             who writes
      --to LIST, --cc LIST    who gets it, such as '"Klein, J." <j@example.org>, k@example.org'
      --subject TEXT          the subject
      --attach FILE           a file to go along; may be repeated
      --charset CHARSET       what the arguments and the text are written in (UTF-8)
      --mail-charset CHARSET  what the mail is written in (UTF-8)
      --smtputf8              addresses may be outside ASCII; the server must have SMTPUTF8
      --help                  prints this text
      --version               prints the version

Lines end with LF. When something is wrong, nothing is written. Messages count from 1. Exit status: 0
written, 1 not written, 2 wrong arguments.
)";

struct Options {
  const char* from = nullptr;
  const char* to = nullptr;
  const char* cc = nullptr;
  const char* subject = nullptr;
  const char* charset = "UTF-8";
  const char* mail_charset = "UTF-8";
  bool smtputf8 = false;
  std::vector<std::string> attachments;
  std::string text_file = "-";
};

// Nothing when the work is done already.
std::optional<Options> read_options(int argc, char** argv) {
  enum { kFrom, kTo, kCc, kSubject, kAttach, kCharset, kMailCharset, kSmtputf8, kHelp, kVersion };
  const option names[] = {{"from", required_argument, nullptr, kFrom},
                          {"to", required_argument, nullptr, kTo},
                          {"cc", required_argument, nullptr, kCc},
                          {"subject", required_argument, nullptr, kSubject},
                          {"attach", required_argument, nullptr, kAttach},
                          {"charset", required_argument, nullptr, kCharset},
                          {"mail-charset", required_argument, nullptr, kMailCharset},
                          {"smtputf8", no_argument, nullptr, kSmtputf8},
                          {"help", no_argument, nullptr, kHelp},
                          {"version", no_argument, nullptr, kVersion},
                          {}};
  Options options;
  const auto set_once = [](const char*& value, const char* name) {
    if (value != nullptr) command::refuse(std::string(name) + " was given twice");
    value = optarg;
  };
  for (int name; (name = getopt_long(argc, argv, "", names, nullptr)) != -1;) {
    switch (name) {
      case kFrom:
        set_once(options.from, "--from");
        break;
      case kTo:
        set_once(options.to, "--to");
        break;
      case kCc:
        set_once(options.cc, "--cc");
        break;
      case kSubject:
        set_once(options.subject, "--subject");
        break;
      case kAttach:
        options.attachments.emplace_back(optarg);
        if (options.attachments.back() == "-") command::refuse("--attach: a file is needed");
        break;
      case kCharset:
        options.charset = optarg;
        break;
      case kMailCharset:
        options.mail_charset = optarg;
        break;
      case kSmtputf8:
        options.smtputf8 = true;
        break;
      case kHelp:
        command::write(help);
        return std::nullopt;
      case kVersion:
        command::write(command::describe_version("qorvii18n-mail"));
        return std::nullopt;
      default:
        // getopt_long() has said what is wrong.
        throw Failure(command::wrong_usage, "see --help");
    }
  }
  if (options.from == nullptr) command::refuse("--from is needed");
  if (options.to == nullptr) command::refuse("--to is needed");
  if (options.subject == nullptr) command::refuse("--subject is needed");
  if (argc - optind > 1) command::refuse(std::string("one file too many: ") + argv[optind + 1]);
  if (optind < argc) options.text_file = argv[optind];
  return options;
}

struct FreeMail {
  void operator()(void* result) const { i18n_mail_free(result); }
};

// Says what is wrong with an argument or a file, of which the library has read nothing but text.
[[noreturn]] void fail(const i18n_mail_error_t& error, const Options& options, std::string what) {
  int exit_status = command::wrong_usage;
  const auto name_charset = [&](const char* option, const char* charset) {
    what = std::string(option) + ": " + charset;
  };
  switch (error.status) {
    case I18N_MAIL_OUT_OF_MEMORY:
      throw std::bad_alloc();
    case I18N_MAIL_UNKNOWN_CHARSET:
      name_charset("--charset", options.charset);
      break;
    case I18N_MAIL_UNKNOWN_MAIL_CHARSET:
      name_charset("--mail-charset", options.mail_charset);
      break;
    default:
      if (what.compare(0, 2, "--") != 0) exit_status = command::failed;
      what += ": byte " + std::to_string(error.position + 1);
  }
  throw Failure(exit_status, what + ": " + i18n_mail_status_text(error.status));
}

class Composer {
 public:
  explicit Composer(const Options& options) : options_(options) {}

  std::string compose() {
    const Addresses from = parse("--from", options_.from);
    const std::time_t now = std::time(nullptr);
    std::tm local;
    localtime_r(&now, &local);
    add_field("Date", [&](auto* error) {
      return i18n_mail_date("Date", now, static_cast<int>(local.tm_gmtoff / 60), error);
    });
    add_addresses("From", "--from", from, from.count);
    if (from.count > 1) add_addresses("Sender", "--from", from, 1);
    add_addresses("To", "--to", parse("--to", options_.to));
    if (options_.cc != nullptr) add_addresses("Cc", "--cc", parse("--cc", options_.cc));
    const std::string_view subject = options_.subject;
    add_field("--subject", [&](auto* error) {
      return i18n_mail_header("Subject", subject.data(), subject.size(), options_.charset,
                              options_.mail_charset, error);
    });
    const std::string_view sender = from.items[0].address;
    add_field("--from", [&](auto* error) {
      return i18n_mail_message_id(sender.data() + sender.rfind('@') + 1, error);
    });
    mail_ += "MIME-Version: 1.0\r\n";
    mail_ += make_body();
    std::erase(mail_, '\r');
    return std::move(mail_);
  }

 private:
  struct Addresses {
    std::unique_ptr<i18n_mail_address_t, FreeMail> block;
    size_t count;
    const i18n_mail_address_t* items;
  };

  template <class Make>
  std::string take(const std::string& what, Make make) const {
    i18n_mail_error_t error;
    const std::unique_ptr<char, FreeMail> result(make(&error));
    if (result == nullptr) fail(error, options_, what);
    return result.get();
  }

  template <class Make>
  void add_field(const std::string& what, Make make) {
    mail_ += take(what, make) + "\r\n";
  }

  Addresses parse(const char* option, std::string_view list) const {
    i18n_mail_error_t error;
    size_t count;
    i18n_mail_address_t* const items =
        i18n_mail_parse_addresses(list.data(), list.size(), options_.charset, &count, &error);
    if (items == nullptr) fail(error, options_, option);
    Addresses addresses = {std::unique_ptr<i18n_mail_address_t, FreeMail>(items), count, items};
    if (count == 0) command::refuse(std::string(option) + ": no address");
    return addresses;
  }

  void add_addresses(const char* name, const char* option, const Addresses& addresses) {
    add_addresses(name, option, addresses, addresses.count);
  }
  void add_addresses(const char* name, const char* option, const Addresses& addresses,
                     size_t count) {
    const auto make = options_.smtputf8 ? i18n_mail_addresses_utf8 : i18n_mail_addresses;
    i18n_mail_error_t error;
    const std::unique_ptr<char, FreeMail> field(
        make(name, addresses.items, count, nullptr, options_.mail_charset, &error));
    if (field == nullptr) {
      const i18n_mail_address_t& item = addresses.items[std::min(error.item, count - 1)];
      const bool needs_more = error.status == I18N_MAIL_NEEDS_SMTPUTF8;
      if (needs_more)
        command::refuse(std::string(option) + ": " + item.address + " needs --smtputf8");
      const bool is_name = error.status == I18N_MAIL_LACKING_CHARACTER;
      fail(error, options_, std::string(option) + ": " + (is_name ? item.name : item.address));
    }
    mail_ += std::string(field.get()) + "\r\n";
  }

  std::string make_body() const {
    command::Input input(options_.text_file);
    const std::string text = input.read_all();
    std::vector<std::string> parts = {take(input.name(), [&](auto* error) {
      return i18n_mail_text("plain", text.data(), text.size(), options_.charset,
                            options_.mail_charset, error);
    })};
    for (const std::string& file : options_.attachments) parts.push_back(make_attachment(file));
    if (parts.size() == 1) return parts[0];
    std::vector<const char*> pointers;
    for (const std::string& part : parts) pointers.push_back(part.c_str());
    return take("attachments", [&](auto* error) {
      return i18n_mail_multipart("mixed", pointers.data(), pointers.size(), error);
    });
  }

  std::string make_attachment(const std::string& file) const {
    command::Input input(file);
    const std::string data = input.read_all();
    const std::string_view name = std::string_view(file).substr(file.rfind('/') + 1);
    std::string type = find_type(file);
    if (type.starts_with("text/") && is_utf8(data)) type += "; charset=UTF-8";
    return take("--attach: " + file, [&](auto* error) {
      return i18n_mail_attachment(type.c_str(), name.data(), name.size(), options_.charset,
                                  data.data(), data.size(), error);
    });
  }

  static bool is_utf8(const std::string& data) {
    i18n_text_converter_t* const converter = i18n_text_open(nullptr, nullptr, nullptr);
    if (converter == nullptr) throw std::bad_alloc();
    const auto drop = [](void*, const char*, size_t) { return 0; };
    const i18n_text_status_t status =
        i18n_text_convert_to(converter, data.data(), data.size(), 1, drop, nullptr);
    i18n_text_close(converter);
    return status == I18N_TEXT_OK;
  }

  const Options& options_;
  std::string mail_;
};

void work(int argc, char** argv) {
  const std::optional<Options> options = read_options(argc, argv);
  if (options) command::write(Composer(*options).compose());
}

}  // namespace

int main(int argc, char** argv) { return command::run(argc, argv, work); }
