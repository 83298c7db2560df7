// Shows a header text as "Q" and as "B" encoded words in their columns, with what the encoding
// tables and the line cycle foretell about them.
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include <qorvii18n/i18n_iconv.h>
#include <qorvii18n/i18n_mime.hpp>

namespace {

constexpr char help[] =
    "usage: fold_header [--to CHARSET] [--threshold X] TEXT\n"
    "\n"
    "Shows how TEXT, in UTF-8, looks as header words, and which form the library chooses.\n"
    "\n"
    "  --to CHARSET   what the words are written in; UTF-8 unless given\n"
    "  --threshold X  \"Q\" words when less than this fraction of the bytes needs escaping, \"B\" "
    "words\n"
    "                 otherwise; 0.3 unless given\n"
    "  --help         prints this text\n"
    "\n"
    "Exit status: 0 encoded, 1 not encoded, 2 wrong usage.\n";

constexpr int exit_failed = 1;
constexpr int exit_usage = 2;

[[noreturn]] void fail(int exit_code, const std::string& message) {
  std::cerr << "fold_header: " << message << '\n';
  std::exit(exit_code);
}

// Ends the program when all of its output is written.
[[noreturn]] void finish() {
  if (!std::cout.flush()) {
    fail(exit_failed, std::string("standard output: ") + std::strerror(errno));
  }
  std::exit(EXIT_SUCCESS);
}

struct Options {
  const char* to = "UTF-8";
  double threshold = 0.3;
  const char* text = nullptr;
};

double parse_threshold(const char* text) {
  char* end;
  const double threshold = std::strtod(text, &end);
  if (end == text || *end != '\0' || text[std::strspn(text, "0123456789.")] != '\0') {
    fail(exit_usage, std::string("--threshold is not a number such as 0.3: ") + text);
  }
  return threshold;
}

Options parse_options(char** argv) {
  Options options;
  for (++argv; *argv != nullptr; ++argv) {
    const std::string argument = *argv;
    const bool takes_value = argument == "--to" || argument == "--threshold";
    if (takes_value && *++argv == nullptr) fail(exit_usage, argument + " needs a value");
    if (argument == "--help") {
      std::cout << help;
      finish();
    } else if (argument == "--to") {
      options.to = *argv;
    } else if (argument == "--threshold") {
      options.threshold = parse_threshold(*argv);
    } else if (argument.rfind("--", 0) == 0) {
      fail(exit_usage, "no such option: " + argument + " (see --help)");
    } else if (options.text != nullptr) {
      fail(exit_usage, "one text too many: " + argument + " (see --help)");
    } else {
      options.text = *argv;
    }
  }
  if (options.text == nullptr) fail(exit_usage, "a text is needed (see --help)");
  return options;
}

struct MimeFree {
  void operator()(char* text) const { i18n_mime_free(text); }
};
using MimeText = std::unique_ptr<char, MimeFree>;

std::optional<std::string> convert(const std::string& text, const i18n_charset_t* from,
                                   const i18n_charset_t* to) {
  char* bytes = nullptr;
  size_t size = 0;
  size_t position;
  const int status =
      i18n_iconv_easy_ex(from, text.data(), text.size(), &position, to, &bytes, &size);
  std::optional<std::string> converted;
  if (status == 0) converted.emplace(bytes, size);
  i18n_iconv_free(bytes);
  return converted;
}

int base64_columns(const std::string& bytes) {
  return static_cast<int>((bytes.size() + 2) / 3 * 4);
}

void print_words(const char* charset, i18n_mime_encoding_t encoding, int columns,
                 const std::string& words) {
  const i18n_mime::HeaderLineCycle line_cycle(charset, encoding);
  std::cout << '\n'
            << get_encoding_str(encoding) << ": " << columns << " columns of text, at most "
            << line_cycle.get_num_bytes_avail() << " in a word\n";
  for (int tens = 1; tens <= 7; ++tens) std::cout << "         " << tens;
  std::cout << '\n';
  for (int column = 1; column <= 76; ++column) std::cout << column % 10;
  std::cout << '\n';
  for (const char c : words) {
    if (c != '\r') std::cout << (c == '\t' ? '>' : c);
  }
  std::cout << '\n';
}

}  // namespace

int main(int /*argc*/, char** argv) {
  const Options options = parse_options(argv);
  const std::string text = options.text;
  const i18n_charset_t* to = i18n_charset_open(options.to);
  if (to == nullptr) fail(exit_failed, std::string("unknown charset: ") + options.to);
  const char* charset = i18n_charset_get_name(to);
  const std::optional<std::string> converted =
      convert(text, i18n_charset_open_special(I18N_CHARSET_SPECIAL_UTF8), to);
  if (!converted)
    fail(exit_failed, "the text cannot be converted from UTF-8 to " + std::string(charset));

  i18n_mime::QPHeaderEncodingTable table;
  const int escapes = table.get_number_qp_encoded_bytes(text);
  const auto chosen =
      options.threshold > escapes / static_cast<double>(text.size()) ? I18N_MIME_QP : I18N_MIME_B64;
  std::cout << text.size() << " bytes, " << escapes << " to escape: " << get_encoding_str(chosen)
            << " is chosen at a threshold of " << options.threshold << '\n';

  const MimeText q(i18n_mime_encode_header_qp(text.c_str(), "UTF-8", charset));
  print_words(charset, I18N_MIME_QP, table.get_byte_size_qp_encoded_str(*converted), q.get());
  const MimeText b(i18n_mime_encode_header_b64(text.c_str(), "UTF-8", charset));
  print_words(charset, I18N_MIME_B64, base64_columns(*converted), b.get());
  std::cout << "\n> is the TAB that opens a further line.\n";
  finish();
}
