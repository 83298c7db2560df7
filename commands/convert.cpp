// qorvii18n-convert: converts files from one charset to another, strictly.
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <getopt.h>

#include <qorvii18n/i18n_text.h>

#include "command.h"
#include "list.h"

namespace {

using command::Failure;
using command::Input;

constexpr const char* help = R"(usage: qorvii18n-convert [-f CHARSET] [-t CHARSET] [FILE...]
       qorvii18n-convert -l

Converts each FILE, or standard input, to standard output. A character that is wrong or that the
target lacks ends the work; what is before it has been written. "-" is standard input, too.

  -f, --from CHARSET  what the files are written in (UTF-8)
  -t, --to CHARSET    what the output is written in (UTF-8)
  -l, --list          lists the charsets, and what mail calls them
      --help          prints this text
      --version       prints the version

Messages count bytes, lines and columns from 1. Exit status: 0 converted, 1 not converted, 2 wrong
usage.
)";

struct Options {
  const char* from = "UTF-8";
  const char* to = "UTF-8";
  std::vector<std::string> files;
};

// Nothing when the work is done already.
std::optional<Options> read_options(int argc, char** argv) {
  enum { kHelp = 256, kVersion };
  const option names[] = {
      {"from", required_argument, nullptr, 'f'},   {"to", required_argument, nullptr, 't'},
      {"list", no_argument, nullptr, 'l'},         {"help", no_argument, nullptr, kHelp},
      {"version", no_argument, nullptr, kVersion}, {}};
  Options options;
  for (int name; (name = getopt_long(argc, argv, "f:t:l", names, nullptr)) != -1;) {
    switch (name) {
      case 'f':
        options.from = optarg;
        break;
      case 't':
        options.to = optarg;
        break;
      case 'l':
        command::write(list_charsets());
        return std::nullopt;
      case kHelp:
        command::write(help);
        return std::nullopt;
      case kVersion:
        command::write(command::describe_version("qorvii18n-convert"));
        return std::nullopt;
      default:
        // getopt_long() has said what is wrong.
        throw Failure(command::wrong_usage, "see --help");
    }
  }
  options.files.assign(argv + optind, argv + argc);
  if (options.files.empty()) options.files = {"-"};
  return options;
}

using Converter = std::unique_ptr<i18n_text_converter_t, decltype(&i18n_text_close)>;

Converter open(const Options& options) {
  i18n_text_status_t status;
  Converter converter(i18n_text_open(options.from, options.to, &status), i18n_text_close);
  if (status == I18N_TEXT_UNKNOWN_SOURCE) {
    command::refuse("unknown charset: " + std::string(options.from));
  } else if (status == I18N_TEXT_UNKNOWN_TARGET) {
    command::refuse("unknown charset: " + std::string(options.to));
  } else if (converter == nullptr) {
    throw std::bad_alloc();
  }
  return converter;
}

std::string describe(const i18n_text_error_t& error, const Options& options) {
  char character[16];
  std::snprintf(character, sizeof character, "U+%04X", error.character);
  std::string text = ':' + std::to_string(error.line) + ':' + std::to_string(error.column) +
                     ": byte " + std::to_string(error.position + 1) + ": ";
  if (error.status == I18N_TEXT_LACKING) return text + options.to + " lacks " + character;
  if (error.status == I18N_TEXT_INVALID) return text + "not " + options.from;
  return text + "the text ends inside a " + options.from + " character";
}

// Each file is a text of its own.
void convert(Input& input, i18n_text_converter_t* converter, const Options& options) {
  std::vector<char> piece(65536), room(2 * piece.size());
  i18n_text_reset(converter);
  for (size_t size = 1; size > 0;) {
    size = input.read(piece);
    const char* begin = piece.data();
    i18n_text_status_t status;
    do {
      char* end = room.data();
      status = i18n_text_convert(converter, &begin, piece.data() + size, &end,
                                 room.data() + room.size(), size == 0);
      command::write({room.data(), end});
    } while (status == I18N_TEXT_FULL);
    if (status == I18N_TEXT_OUT_OF_MEMORY) throw std::bad_alloc();
    if (status != I18N_TEXT_OK) {
      i18n_text_error_t error;
      i18n_text_get_error(converter, &error);
      throw Failure(command::failed, input.name() + describe(error, options));
    }
  }
}

void work(int argc, char** argv) {
  const std::optional<Options> options = read_options(argc, argv);
  if (!options) return;
  const Converter converter = open(*options);
  for (const std::string& file : options->files) {
    Input input(file);
    convert(input, converter.get(), *options);
  }
}

}  // namespace

int main(int argc, char** argv) { return command::run(argc, argv, work); }
