#include "support/calls.h"

#include <qorvii18n/i18n_catalog.h>
#include <qorvii18n/i18n_iconv.h>
#include <qorvii18n/i18n_mail.h>
#include <qorvii18n/i18n_mime.h>
#include <qorvii18n/i18n_text.h>
#include <unicode/ucnv.h>

#include <array>
#include <cstring>
#include <memory>
#include <new>
#include <qorvii18n/i18n_mime.hpp>
#include <string_view>
#include <utility>

#include "support/testing.h"

namespace {

template <int times, size_t size>
constexpr auto repeated(const char (&text)[size]) {
  std::array<char, times*(size - 1) + 1> all = {};
  for (size_t i = 0; i + 1 < all.size(); ++i) all[i] = text[i % (size - 1)];
  return all;
}
constexpr auto german = repeated<60>("Gr\u00f6\u00dfe = 5 \u20ac, ");
constexpr auto japanese = repeated<900>("\u65e5\u672c\u8a9e\u306e\u672c 1 ");
constexpr char sjis[] = "\x93\xfa\x96\x7b\x8c\xea";
constexpr size_t header_size = 320;

// What a call stores is the caller's to release, even when the call then fails.
struct Stored {
  ~Stored() { i18n_mime_free(text); }
  char* text = nullptr;
};

using Encode = char* (*)(const char*, const char*, const char*);
template <Encode encode>
std::string encode_texts() {
  std::string all;
  for (const auto& [from, to] : {std::pair("UTF-8", "windows-1252"), std::pair("UTF-8", "UTF-8"),
           std::pair("windows-1252", "ISO-2022-KR"), std::pair("UTF-8", "utf-8")}) {
    all += take(encode(german.data(), from, to)) + '\n';
  }
  return all + take(encode(japanese.data(), "UTF-8", "ISO-2022-JP"));
}

std::string encode_chosen(const char* from, const char* to) {
  Stored target;
  i18n_mime_encoding_t encoding = I18N_MIME_NONE;
  const std::string text = take(i18n_mime_encode(sjis, from, to, .5, &encoding, &target.text));
  return text + target.text + std::to_string(encoding);
}

// From the default charset.
template <auto encode, auto... arguments>
std::string encode_default() {
  set_default_charset("shift_jis");
  return take(encode(sjis, arguments...));
}

}  // namespace

std::string convert_easy(const char* from, std::string_view text, const char* to) {
  int64_t length = -1;
  Stored out = {i18n_iconv_easy(i18n_charset_open(from), text.data(), static_cast<int>(text.size()),
      i18n_charset_open(to), nullptr, &length)};
  return std::to_string(length) + (out.text != nullptr ? out.text : "none");
}

std::string convert(const char* from, std::string_view text, const char* to, size_t capacity) {
  char callers[64];
  char* output = capacity != 0 ? callers : nullptr;
  size_t position = 0, length = capacity;
  const i18n_charset_t* const source = i18n_charset_open(from);
  const i18n_charset_t* const target = i18n_charset_open(to);
  int status;
  try {
    status =
        i18n_iconv_easy_ex(source, text.data(), text.size(), &position, target, &output, &length);
  } catch (const std::bad_alloc&) {
    const bool is_as_before = output == (capacity != 0 ? callers : nullptr) && length == 0;
    if (is_as_before) throw;
    return "output and length were left behind";
  }
  const Stored out = {capacity == 0 ? output : nullptr};
  return std::to_string(status) + ' ' + std::to_string(position) + ' ' +
         (output != nullptr ? std::string(output, length) : "none");
}

namespace {

template <class Make>
std::string make_mail(Make make) {
  i18n_mail_error_t error;
  char* result = make(&error);
  if (error.status == I18N_MAIL_OUT_OF_MEMORY) throw std::bad_alloc();
  return result != nullptr ? take(result) : i18n_mail_status_text(error.status);
}

// A function that makes a mail in this way.
template <class Make>
constexpr auto mail(Make) {
  return [] { return make_mail(Make()); };
}

// The addresses of a list, or where its mistake is.
std::string parse(std::string_view list, const char* charset) {
  i18n_mail_error_t error;
  size_t count;
  const std::unique_ptr<i18n_mail_address_t[], void (*)(void*)> items(
      i18n_mail_parse_addresses(list.data(), list.size(), charset, &count, &error), i18n_mail_free);
  if (error.status == I18N_MAIL_OUT_OF_MEMORY) throw std::bad_alloc();
  std::string all = std::to_string(error.status) + ' ' + std::to_string(error.position);
  for (size_t i = 0; i < count; ++i) all.append(items[i].name).append(items[i].address);
  return all;
}

std::string convert_whole(const char* from, const char* to, std::string_view text) {
  i18n_text_error_t error;
  size_t length;
  const std::unique_ptr<char, void (*)(char*)> made(
      i18n_text_convert_all(from, to, text.data(), text.size(), &length, &error), i18n_text_free);
  if (error.status == I18N_TEXT_OUT_OF_MEMORY) throw std::bad_alloc();
  return made ? std::string(made.get(), length) : std::to_string(error.position);
}

std::string get_name(i18n_charset_t* charset) { return i18n_charset_get_name(charset); }

constexpr Call calls[] = {
    {"i18n_charset_open", [] { return get_name(i18n_charset_open("sjis")); }},
    {"i18n_charset_open_special",
        [] { return get_name(i18n_charset_open_special(I18N_CHARSET_SPECIAL_UTF32)); }},
    {"i18n_charset_open_all",
        [] {
          std::string names;
          for (i18n_charset_t** charset = i18n_charset_open_all(); *charset != nullptr; ++charset) {
            names += i18n_charset_get_name(*charset);
          }
          return names;
        }},
    {"i18n::open_ucnv_converter",
        [] {
          UConverter* converter = i18n::open_ucnv_converter("ISO-2022-CN");
          ucnv_close(converter);
          return std::string(converter != nullptr ? "open" : "none");
        }},
    {"i18n_iconv_open",
        [] {
          i18n_iconv_t* handle =
              i18n_iconv_open(i18n_charset_open("Big5"), i18n_charset_open("ISO-2022-KR"));
          if (handle == nullptr) throw std::bad_alloc();  // its way to say so
          i18n_iconv_reset(handle);
          i18n_iconv_close(handle);
          return std::to_string(i18n_iconv() + i18n_iconv_detect_codeset());
        }},
    {"i18n_iconv_easy",
        [] {
          return convert_easy("UTF-8", german.data(), "windows-1252") +
                 convert_easy("ISO-8859-1", german.data(), "UTF-8") +
                 convert_easy("UTF-8", japanese.data(), "Shift_JIS") +
                 convert_easy("UTF-8", japanese.data(), "US-ASCII");
        }},
    {"i18n_iconv_easy_ex",
        [] {
          const std::string_view text = japanese.data();
          return convert("UTF-8", german.data(), "windows-1252") +
                 convert("UTF-8", text, "EUC-JP") + convert("UTF-8", text, "US-ASCII") +
                 convert("UTF-8", text, "GBK", 63);
        }},
    {"i18n_iconv_easy_ex, failing",
        [] {
          convert_easy("UTF-8", "", "UTF-16BE");  // an earlier call may have failed
          std::string all = convert("UTF-8", "a\xff", "KOI8-R");
          all += convert("UTF-8", "ab\u00e9\u20ac", "KOI8-R");
          return all + convert("UTF-8", "abc\u0416", "UTF-16BE", 7);
        }},
    {"i18n_mime_encode_qp", encode_texts<i18n_mime_encode_qp>},
    {"i18n_mime_encode_b64", encode_texts<i18n_mime_encode_b64>},
    {"i18n_mime_encode_header_qp", encode_texts<i18n_mime_encode_header_qp>},
    {"i18n_mime_encode_header_b64", encode_texts<i18n_mime_encode_header_b64>},
    {"i18n_mime_encode",
        [] { return encode_chosen("sjis", nullptr) + encode_chosen("KOI8-R", "UTF-8"); }},
    {"i18n_mime_encode, no target", [] { return encode_chosen("KOI8-R", nullptr); }},
    {"i18n_mime_easy_encode_header_b64", encode_default<i18n_mime_easy_encode_header_b64>},
    {"i18n_mime_easy_encode_header_qp", encode_default<i18n_mime_easy_encode_header_qp>},
    {"i18n_mime_easy_encode_header", encode_default<i18n_mime_easy_encode_header, 1>},
    {"i18n_mime_easy_encode", encode_default<i18n_mime_easy_encode, 1, nullptr, nullptr>},
    {"i18n_mime_encode_header",
        [] {
          return take(i18n_mime_encode_header(german.data(), "UTF-8", "ISO-8859-15", .5)) +
                 take(i18n_mime_encode_header(sjis, "sjis", nullptr, .5));
        }},
    {"i18n_mime_get_body_to_charset_name",
        [] { return std::string(i18n_mime_get_body_to_charset_name("S-JIS")); }},
    {"i18n_mime_get_header_to_charset_name",
        [] { return std::string(i18n_mime_get_header_to_charset_name("Shift_JIS")); }},
    {"i18n_mime_transform_charset_name",
        [] { return take(i18n_mime_transform_charset_name("A-longer-name-than-strings-hold")); }},
    {"i18n_mail_header", mail([](auto* error) {
       return i18n_mail_header(
           "Subject", german.data(), header_size, "UTF-8", "ISO-8859-15", error);
     })},
    {"i18n_mail_header, characters that belong together", mail([](auto* error) {
       const char* const family = "\U0001F468\u200D\U0001F469\u200D\U0001F467\U0001F468";
       return i18n_mail_header("Subject", family, std::strlen(family), "utf8", nullptr, error);
     })},
    {"i18n_mail_header, lacking", mail([](auto* error) {
       return i18n_mail_header("Subject", german.data(), header_size, nullptr, "TIS-620", error);
     })},
    {"i18n_mail_addresses", mail([](auto* error) {
       const i18n_mail_address_t items[] = {
           {german.data(), header_size, "a@b"}, {"a", 1, "j@k\u00f6ln.example"}};
       return i18n_mail_addresses("To", items, 2, "windows-1252", "windows-1252", error);
     })},
    {"i18n_mail_parameter", mail([](auto* error) {
       return i18n_mail_parameter("filename", sjis, sizeof sjis - 1, "Shift_JIS", error);
     })},
    {"i18n_mail_text", mail([](auto* error) {
       return i18n_mail_text(
           "plain", japanese.data(), japanese.size() - 1, "UTF-8", "ISO-2022-JP", error);
     })},
    {"i18n_mail_text, quoted-printable", mail([](auto* error) {
       return i18n_mail_text("plain", german.data(), german.size() - 1, "utf8", "latin9", error);
     })},
    {"i18n_mail_data", mail([](auto* error) {
       return i18n_mail_data("a/b; c=d", japanese.data(), japanese.size(), error);
     })},
    {"i18n_mail_attachment", mail([](auto* error) {
       return i18n_mail_attachment(
           "a/b", sjis, sizeof sjis - 1, "Shift_JIS", japanese.data(), 100, error);
     })},
    {"i18n_mail_multipart", mail([](auto* error) {
       const char* const parts[] = {"A: b\r\n\r\n--=_1_=\r\n", "A: b\r\n"};
       return i18n_mail_multipart("mixed; a=\"b c\"", parts, 2, error);
     })},
    {"i18n_mail_addresses_utf8", mail([](auto* error) {
       const i18n_mail_address_t item = {german.data(), 8, "\u00fc@xn--kln-sna.example"};
       return i18n_mail_addresses_utf8("To", &item, 1, nullptr, nullptr, error);
     })},
    {"i18n_mail_parse_addresses",
        [] {
          return parse("A\xfc \"B, c\" <\xfc@b>, d@k\xf6ln.example, (e) f@[1.2.3.4]", "latin1");
        }},
    {"i18n_mail_parse_addresses, with a mistake",
        [] { return parse("a\xfc <b@c>, d", "windows-1252"); }},
    {"i18n_mail_structured", mail([](auto* error) {
       const std::string value = repeat("<a@b> ", 30) + "<c@d>";
       return i18n_mail_structured("References", value.c_str(), error);
     })},
    {"i18n_mail_date", mail([](auto* error) { return i18n_mail_date("Date", 0, 0, error); })},
    {"i18n_mail_message_id",
        [] {
          const auto make = [](auto* error) { return i18n_mail_message_id("\u00f6.eu", error); };
          return make_mail(make).erase(13, 32);  // what is random
        }},
    {"i18n_text_convert_all",
        [] {
          return convert_whole("UTF-8", "ISO-2022-JP", japanese.data()) +
                 convert_whole("sjis", "GB18030", sjis) +
                 convert_whole("UTF-8", "Shift_JIS", "\ue000");  // takes another look
        }},
    {"i18n_text_convert_all, lacking",
        [] { return convert_whole("UTF-8", "ISO-8859-1", german.data()); }},
};

}  // namespace

std::span<const Call> get_calls() { return calls; }
