// Text in pieces: in one call, and cut as the input says, which must come to the same; and beside
// ICU's conversion of the whole.
#include <qorvii18n/i18n_text.h>

#include <tuple>

#include "fuzz.h"

using fuzz::check;

namespace {

struct Result {
  i18n_text_status_t status;
  std::string output;
  i18n_text_error_t error;
};

// Pieces and room of these sizes, again and again.
Result convert(i18n_text_converter_t* converter, std::string_view text, size_t piece, size_t room) {
  Result result = {I18N_TEXT_OK, "", {}};
  std::string buffer(room, '\0');
  i18n_text_reset(converter);
  for (bool is_last = false; result.status == I18N_TEXT_OK && !is_last;) {
    const std::string_view taken = text.substr(0, piece);
    text.remove_prefix(taken.size());
    is_last = taken.empty();
    const char* input = taken.data();
    const char* const end = input + taken.size();
    do {
      const char* const before = input;
      char* output = buffer.data();
      result.status = i18n_text_convert(converter, &input, end, &output, output + room, is_last);
      result.output.append(buffer.data(), output);
      check(result.status != I18N_TEXT_FULL || output != buffer.data() || input != before,
            "where there is room, something is done");
    } while (result.status == I18N_TEXT_FULL);
    check(result.status != I18N_TEXT_OK || input == end, "all input is taken");
  }
  i18n_text_get_error(converter, &result.error);
  return result;
}

bool is_same(const Result& left, const Result& right) {
  const auto tie = [](const Result& result) {
    const i18n_text_error_t& error = result.error;
    return std::tie(result.status, result.output, error.status, error.position, error.line,
                    error.column, error.character);
  };
  return tie(left) == tie(right);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  const char* const from = input.charset(true);
  const char* const to = input.charset(true);
  const size_t piece = input.number(64) + 1, room = input.number(64) + 1;
  const char* const source = from != nullptr ? from : "UTF-8";
  const char* const target = to != nullptr ? to : "UTF-8";
  const std::string text = input.text(source, target, 256);

  i18n_text_converter_t* const converter = i18n_text_open(from, to, nullptr);
  if (converter == nullptr) return 0;
  const Result whole = convert(converter, text, text.size() + 1, 16 * text.size() + 4096);
  check(is_same(whole, convert(converter, text, piece, room)), "pieces do not matter");
  check(is_same(whole, convert(converter, text, text.size() + 1, room)), "room does not matter");
  check(is_same(whole, convert(converter, text, piece, 4096)), "pieces do not matter");

  // ICU lets more pass, and its result is the same where it does.
  std::string expected;
  const bool converts = fuzz::convert_text(source, target, text, expected);
  if (whole.status == I18N_TEXT_OK) {
    check(converts && fuzz::is_same_text(expected, whole.output, target), "the result is ICU's");
  } else {
    check(whole.error.status == whole.status && whole.error.position <= text.size(),
          "an error lies in the text");
    const auto position = static_cast<size_t>(whole.error.position);
    const Result before =
        convert(converter, std::string_view(text).substr(0, position), 4096, 4096);
    // A run of these may be longer than what is looked through.
    const bool has_runs = std::string_view(source).starts_with("IMAP") ||
                          std::string_view(source).starts_with("ISCII");
    check(before.status == I18N_TEXT_OK || (has_runs && text.size() > 250),
          "what is before an error converts");
  }
  i18n_text_close(converter);
  return 0;
}
