// The MIME functions for C, seen from outside. The easy ones only add ICU's default charset.
#include <qorvii18n/i18n_mime.h>

#include "fuzz.h"

using fuzz::check;

namespace {

bool should_be_qp(const std::string& text, bool header, double threshold) {
  double escaped = 0;
  for (const char byte : text) escaped += !fuzz::is_literal(byte, header);
  return threshold > escaped / static_cast<double>(text.size());
}

std::string take(char* owned) {
  check(owned != nullptr, "there is a result");
  std::string text = owned;
  i18n_mime_free(owned);
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  const char* from = input.charset(true);
  const char* to = input.charset(true);
  const bool header = input.number(2) == 1;
  const unsigned kind = input.number(3);
  const bool chooses = kind == 2;
  const double threshold = input.number(256) / 128.0;
  const std::string text = input.text(from, to).c_str();  // up to the first NUL
  const char* const str = text.c_str();

  constexpr decltype(&i18n_mime_encode_qp) fixed[2][2] = {
      {i18n_mime_encode_qp, i18n_mime_encode_b64},
      {i18n_mime_encode_header_qp, i18n_mime_encode_header_b64}};
  i18n_mime_encoding_t chosen = I18N_MIME_NONE;
  char* to_out = nullptr;
  const std::string result =
      take(!chooses ? fixed[header][kind](str, from, to)
           : header ? i18n_mime_encode_header(str, from, to, threshold)
                    : i18n_mime_encode(str, from, to, threshold, &chosen, &to_out));
  for (const int position : fuzz::messages) {
    check(static_cast<size_t>(position) <= text.size(), "a message's position lies in the text");
  }

  const bool is_qp = chooses ? should_be_qp(text, header, threshold) : kind == 0;
  if (chooses && from == nullptr) from = ucnv_getDefaultName();
  if (chooses && to == nullptr) {
    to = header ? i18n_mime_get_header_to_charset_name(from)
                : i18n_mime_get_body_to_charset_name(from);
  }
  const std::string name = to != nullptr ? to : "";
  check(to_out == nullptr || take(to_out) == name, "the target is told");

  // A body between equal names is not converted.
  const bool has_names = from != nullptr && to != nullptr;
  const bool passes_through = !header && has_names && from == name;
  std::string expected = text;
  const bool converts =
      passes_through || (has_names && fuzz::convert_text(from, to, text, expected));
  const bool is_known = !has_names || passes_through || fuzz::is_read_alike_in_chunks(from);
  const bool failed = is_known ? !converts : !fuzz::messages.empty();
  // A long name leaves a word no room, or too little for a character. And ICU does not say which
  // bytes make a character of compound text, so that its words can have any length and form.
  const bool is_narrow = fuzz::failed_checks != 0;
  const bool is_shapeless = is_narrow && name == "x11-compound-text";
  check(!is_narrow || (header && (is_shapeless || name.size() > 50)), "no internal check fails");
  if (failed || (is_narrow && !is_qp)) {
    check(text == result, "a failure leaves the text as it is");
    check(is_narrow || !fuzz::messages.empty() || !has_names, "a failure is reported");
    return 0;
  }
  check(fuzz::messages.empty(), "what is encoded is not reported");
  check(header || !chooses || chosen == (is_qp ? I18N_MIME_QP : I18N_MIME_B64), "a choice is told");
  if (is_shapeless) return 0;
  const std::string decoded =
      fuzz::decode(result, is_qp ? 'Q' : 'B', header ? name : "", is_narrow);
  check(!is_known || fuzz::is_same_text(decoded, expected, name), "the result is the text");
  return 0;
}
