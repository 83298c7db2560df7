// Shows a header text as "Q" and as "B" encoded words in their columns, with what the encoding
// tables and the line cycle predict about them.
#include <cstring>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include <qorvii18n/i18n_iconv.h>
#include <qorvii18n/i18n_mime.hpp>

namespace {

// "Q" words are chosen when less than this fraction of the bytes needs escaping.
constexpr double threshold = 0.3;

using MimeText = std::unique_ptr<char, decltype(&i18n_mime_free)>;
using ConvertedText = std::unique_ptr<char, decltype(&i18n_iconv_free)>;

std::string convert(const std::string& text, const i18n_charset_t* to) {
  int64_t size = 0;
  const ConvertedText converted(
      i18n_iconv_easy(i18n_charset_open_special(I18N_CHARSET_SPECIAL_UTF8), text.data(),
                      static_cast<int>(text.size()), to, nullptr, &size),
      i18n_iconv_free);
  if (converted == nullptr) throw std::runtime_error("the text cannot be converted from UTF-8");
  return {converted.get(), static_cast<std::size_t>(size)};
}

void print_words(const char* charset, i18n_mime_encoding_t encoding, std::size_t columns,
                 const MimeText& words) {
  const i18n_mime::HeaderLineCycle line_cycle(charset, encoding);
  std::cout << '\n'
            << get_encoding_str(encoding) << ": " << columns << " columns of text, at most "
            << line_cycle.get_num_bytes_avail() << " in a word\n";
  for (int tens = 1; tens <= 7; ++tens) std::cout << "         " << tens;
  std::cout << '\n';
  for (int column = 1; column <= 76; ++column) std::cout << column % 10;
  std::cout << '\n';
  for (const char* c = words.get(); *c != '\0'; ++c) {
    if (*c != '\r') std::cout << (*c == '\t' ? '>' : *c);
  }
  std::cout << '\n';
}

// Names with options, which follow a comma, are not for mail.
const i18n_charset_t* open_mail_charset(const char* name) {
  const bool has_options = std::strchr(name, ',') != nullptr;
  const i18n_charset_t* charset = has_options ? nullptr : i18n_charset_open(name);
  if (charset == nullptr || std::strchr(i18n_charset_get_name(charset), ',') != nullptr) {
    throw std::runtime_error(std::string("unknown charset: ") + name);
  }
  return charset;
}

void fold(const std::string& text, const char* name) {
  const i18n_charset_t* to = open_mail_charset(name);
  const char* charset = i18n_charset_get_name(to);
  const std::string converted = convert(text, to);

  i18n_mime::QPHeaderEncodingTable table;
  const int escapes = table.get_number_qp_encoded_bytes(text);
  const auto chosen =
      threshold > escapes / static_cast<double>(text.size()) ? I18N_MIME_QP : I18N_MIME_B64;
  std::cout << text.size() << " bytes, " << escapes << " to escape: " << get_encoding_str(chosen)
            << " is chosen at a threshold of " << threshold << '\n';

  print_words(charset, I18N_MIME_QP, table.get_byte_size_qp_encoded_str(converted),
              {i18n_mime_encode_header_qp(text.c_str(), "UTF-8", charset), i18n_mime_free});
  print_words(charset, I18N_MIME_B64, (converted.size() + 2) / 3 * 4,
              {i18n_mime_encode_header_b64(text.c_str(), "UTF-8", charset), i18n_mime_free});
  std::cout << "\n> is the TAB that opens a further line.\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 && argc != 3) {
    std::cerr << "usage: fold_header TEXT [CHARSET]\n";
    return 2;
  }
  try {
    fold(argv[1], argc == 3 ? argv[2] : "UTF-8");
    return std::cout.flush() ? 0 : 1;
  } catch (const std::exception& failure) {
    std::cerr << "fold_header: " << failure.what() << '\n';
    return 1;
  }
}
