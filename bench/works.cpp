// The functions of the library that are measured, each beside its reference.
#include <qorvii18n/i18n_iconv.h>
#include <qorvii18n/i18n_mail.h>
#include <qorvii18n/i18n_mime.h>

#include "bench.h"

namespace bench {

namespace {

template <auto encode>
Function mime(const char* from, const char* to) {
  return [=](const std::string& text) -> Output {
    return {{encode(text.c_str(), from, to), i18n_mime_free}};
  };
}

// Every text has bytes to escape and bytes that need none: 0 chooses base64, 1 quoted-printable.
template <int threshold>
Function mime_chosen(const char* from, const char* to) {
  return [=](const std::string& text) -> Output {
    return {
        {i18n_mime_encode(text.c_str(), from, to, threshold, nullptr, nullptr), i18n_mime_free}};
  };
}

Function easy(const char* from, const char* to) {
  return [source = i18n_charset_open(from), target = i18n_charset_open(to)](const auto& text) {
    int64_t size = 0;
    char* bytes =
        i18n_iconv_easy(source, text.data(), static_cast<int>(text.size()), target, nullptr, &size);
    return Output{{bytes, i18n_iconv_free}, static_cast<size_t>(size)};
  };
}

Function easy_ex(const char* from, const char* to) {
  return [source = i18n_charset_open(from), target = i18n_charset_open(to)](const auto& text) {
    char* bytes = nullptr;
    size_t size = 0;
    size_t error_position;
    i18n_iconv_easy_ex(source, text.data(), text.size(), &error_position, target, &bytes, &size);
    return Output{{bytes, i18n_iconv_free}, size};
  };
}

// An output that the next call overwrites.
constexpr auto keep_buffer = [](void*) {};

// A buffer of the caller's, with room for any result.
Function filled(const char* from, const char* to) {
  fill_tables(from, to);
  return [source = i18n_charset_open(from), target = i18n_charset_open(to),
          room = std::make_shared<std::string>()](const std::string& text) -> Output {
    if (room->empty()) room->resize(3 * text.size());
    char* bytes = room->data();
    size_t size = room->size(), error_position;
    i18n_iconv_easy_ex(source, text.data(), text.size(), &error_position, target, &bytes, &size);
    return {{bytes, keep_buffer}, size};
  };
}

Function allocated(const char* from, const char* to) {
  fill_tables(from, to);
  return easy_ex(from, to);
}

// The same call with another text, made of the first that it gets.
using Change = std::string (*)(const std::string& text);
template <MakeFunction make, Change change>
Function with(const char* from, const char* to) {
  return
      [call = make(from, to), changed = std::make_shared<std::string>()](const std::string& text) {
        if (changed->empty()) *changed = change(text);
        return call(*changed);
      };
}

// Of all charsets here, only GB18030 and UTF-8 have the character.
std::string add_lacking(const std::string& text) { return text + "\U00010330"; }
// Only those have this one, too, which vanishes otherwise.
std::string add_mark(const std::string& text) { return "\ufeff" + text; }
std::string add_byte(const std::string& text) { return text + 'a'; }

template <auto encode>
Function mime_by_tables(const char* from, const char* to) {
  fill_tables(from, to);
  return mime<encode>(from, to);
}

template <auto encode>
Function mime_unconverted(const char* from, const char* /*to*/) {
  return mime<encode>(from, from);
}

template <auto encode>
Function mime_otherwise_spelt(const char* /*from*/, const char* to) {
  return mime<encode>("Utf-8", to);
}

void free_mail(void* result) { i18n_mail_free(static_cast<char*>(result)); }

Function header_field(const char* from, const char* to) {
  return [=](const std::string& text) -> Output {
    return {{i18n_mail_header("Subject", text.data(), text.size(), from, to, nullptr), free_mail}};
  };
}

Function header_field_by_tables(const char* from, const char* to) {
  const Function field = header_field(from, to);
  constexpr size_t enough_calls = 3 * kib;
  for (size_t call = 0; call < enough_calls; ++call) field(" ");
  return field;
}

Function header_field_in_utf8(const char* from, const char* /*to*/) {
  return header_field(from, "UTF-8");
}

Function text_part(const char* from, const char* to) {
  return [=](const std::string& text) -> Output {
    return {{i18n_mail_text("plain", text.data(), text.size(), from, to, nullptr), free_mail}};
  };
}

// A reference that works on a text as it is, whatever its charset.
template <Output (*encode)(const std::string&)>
Function peer(const char* /*from*/, const char* /*to*/) {
  return encode;
}

// The library ends all lines of a part with CR LF, the last one, too, which these texts do not end.
std::string decode_lines(std::string_view output) {
  std::string text = decode_part(output);
  std::erase(text, '\r');
  text.pop_back();
  return text;
}

std::string decode_longer_base64(std::string_view output) {
  std::string text = decode_base64(output);
  text.pop_back();
  return text;
}

std::string keep(std::string_view output) { return std::string(output); }

constexpr MakeFunction b64_body = mime_by_tables<i18n_mime_encode_b64>;
constexpr MakeFunction b64_header = mime_by_tables<i18n_mime_encode_header_b64>;
constexpr MakeFunction qp_header = mime_by_tables<i18n_mime_encode_header_qp>;

}  // namespace

void fill_tables(const char* from, const char* to) {
  const std::string text(mib, 'a');
  easy_ex(from, to)(text);
  easy_ex(to, from)(text);
}

const Work base64_body = {"base64 body, names equal", "\n",
                          mime<i18n_mime_encode_b64>, decode_base64,
                          peer<encode_base64_lines>,  decode_base64};
const Work quoted_printable_body = {"quoted-printable body, names equal",
                                    "\n",
                                    mime<i18n_mime_encode_qp>,
                                    decode_quoted_printable,
                                    peer<encode_quoted_printable>,
                                    decode_quoted_printable};
const Work chosen_base64_body = {
    "chosen base64 body",      "\n",         mime_chosen<0>, decode_base64,
    peer<encode_base64_lines>, decode_base64};
const Work chosen_quoted_printable_body = {"chosen quoted-printable body",
                                           "\n",
                                           mime_chosen<1>,
                                           decode_quoted_printable,
                                           peer<encode_quoted_printable>,
                                           decode_quoted_printable};
const Work converted_base64_body = {"base64 body", "\n",          mime<i18n_mime_encode_b64>,
                                    decode_base64, icu_in_chunks, keep};
const Work converted_quoted_printable_body = {
    "quoted-printable body", "\n",          mime<i18n_mime_encode_qp>,
    decode_quoted_printable, icu_in_chunks, keep};
const Work b_header = {
    "B header",          " ",          mime<i18n_mime_encode_header_b64>, decode_header,
    peer<encode_header>, decode_header};
const Work q_header = {
    "Q header",          " ",          mime<i18n_mime_encode_header_qp>, decode_header,
    peer<encode_header>, decode_header};
const Work body_beside_best = {"base64 body, ICU's best", "\n", b64_body, decode_base64,
                               icu_at_its_best,           keep};
const Work b_header_beside_utf8 = {"B header, in UTF-8",
                                   " ",
                                   b64_header,
                                   decode_header,
                                   mime_unconverted<i18n_mime_encode_header_b64>,
                                   decode_header,
                                   "UTF-8"};
const Work q_header_beside_utf8 = {"Q header, in UTF-8",
                                   " ",
                                   qp_header,
                                   decode_header,
                                   mime_unconverted<i18n_mime_encode_header_qp>,
                                   decode_header,
                                   "UTF-8"};
const Work body_beside_equal_names = {"base64 body, names equal",
                                      "\n",
                                      b64_body,
                                      decode_base64,
                                      mime_unconverted<i18n_mime_encode_b64>,
                                      decode_base64};
const Work body_with_mark = {"base64 body with a mark, without",
                             "\n",
                             with<b64_body, add_mark>,
                             decode_base64,
                             b64_body,
                             decode_base64};
const Work b_header_with_mark = {"B header with a mark, without",
                                 " ",
                                 with<b64_header, add_mark>,
                                 decode_header,
                                 b64_header,
                                 decode_header,
                                 "UTF-8"};
const Work q_header_with_mark = {"Q header with a mark, without",
                                 " ",
                                 with<qp_header, add_mark>,
                                 decode_header,
                                 qp_header,
                                 decode_header,
                                 "UTF-8"};
const Work body_from_spelling = {"base64 body from Utf-8, from UTF-8",
                                 "\n",
                                 mime_otherwise_spelt<i18n_mime_encode_b64>,
                                 decode_base64,
                                 b64_body,
                                 decode_base64};
const Work header_from_spelling = {"B header from Utf-8, from UTF-8",
                                   " ",
                                   mime_otherwise_spelt<i18n_mime_encode_header_b64>,
                                   decode_header,
                                   b64_header,
                                   decode_header,
                                   "UTF-8"};
const Work body_with_byte = {"base64 body, a byte more", "\n",     with<b64_body, add_byte>,
                             decode_longer_base64,       b64_body, decode_base64};
const Work iconv_easy = {"i18n_iconv_easy", "\n", easy, keep, icu_in_two_calls, keep};
const Work iconv_easy_ex = {"i18n_iconv_easy_ex", "\n", easy_ex, keep, icu_with_offsets, keep};
const Work iconv_allocated = {
    "i18n_iconv_easy_ex, ICU's best", "\n", allocated, keep, icu_at_its_best, keep};
const Work iconv_filled = {
    "i18n_iconv_easy_ex into a buffer, ICU's best", "\n", filled, keep, icu_at_its_best, keep};
const Work iconv_filled_beside_allocated = {
    "i18n_iconv_easy_ex into a buffer, allocated", "\n", filled, keep, allocated, keep};
const Work iconv_failing_beside_converting = {"i18n_iconv_easy_ex, failing, converting",
                                              "\n",
                                              with<allocated, add_lacking>,
                                              keep,
                                              allocated,
                                              keep};
const Work mail_header = {"i18n_mail_header",  " ",          header_field, decode_header,
                          peer<encode_header>, decode_header};
const Work mail_text = {"i18n_mail_text",       "\n",       text_part, decode_lines,
                        peer<encode_text_part>, decode_part};
const Work mail_header_beside_utf8 = {"i18n_mail_header, in UTF-8",
                                      " ",
                                      header_field_by_tables,
                                      decode_header,
                                      header_field_in_utf8,
                                      decode_header,
                                      "UTF-8"};
const Work mail_text_beside_body = {"i18n_mail_text, quoted-printable body",
                                    "\n",
                                    text_part,
                                    decode_lines,
                                    mime<i18n_mime_encode_qp>,
                                    decode_quoted_printable};

}  // namespace bench
