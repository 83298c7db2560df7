// What the fuzz targets share: inputs cut into fields, ICU conversions to compare with, a strict
// decoder, and a record of what the library reports. A target is one source file with this header.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <qorviks.h>
#include <unicode/ucnv.h>

#include "charsets.h"

namespace fuzz {

// Of the current input: the position that each printed message gives, 0 where it gives none, and
// how many of the library's own checks failed.
inline std::vector<int> messages;
inline int failed_checks;

// ICU is not instrumented: this tells the fuzzer that no other input had this charset.
__attribute__((section("__libfuzzer_extra_counters"))) inline unsigned char seen_charsets[256];

inline void check(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

// A strict converter stops at what it cannot convert, another leaves it out.
inline icu::LocalUConverterPointer open_converter(const char* name, bool strict = true) {
  const auto to_unicode = strict ? UCNV_TO_U_CALLBACK_STOP : UCNV_TO_U_CALLBACK_SKIP;
  const auto from_unicode = strict ? UCNV_FROM_U_CALLBACK_STOP : UCNV_FROM_U_CALLBACK_SKIP;
  UErrorCode status = U_ZERO_ERROR;
  icu::LocalUConverterPointer converter(ucnv_open(name, &status));
  if (converter.isNull()) return converter;
  ucnv_setFallback(converter.getAlias(), false);
  ucnv_setToUCallBack(converter.getAlias(), to_unicode, nullptr, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(converter.getAlias(), from_unicode, nullptr, nullptr, nullptr, &status);
  return converter;
}

// One call of ucnv_toUnicode or ucnv_fromUnicode over a whole text; the result's size is the room.
template <class Function, class In, class Out>
UErrorCode convert(Function function, UConverter* converter, const std::basic_string<In>& text,
                   std::basic_string<Out>& result, size_t* consumed = nullptr) {
  const In* source = text.data();
  Out* target = result.data();
  UErrorCode status = U_ZERO_ERROR;
  function(converter, &target, target + result.size(), &source, source + text.size(), nullptr, true,
           &status);
  result.resize(static_cast<size_t>(target - result.data()));
  if (consumed != nullptr) *consumed = static_cast<size_t>(source - text.data());
  return status;
}

// One call for each of the two steps, with room for whatever comes. False when one fails. The text
// and the result can be one string.
inline bool convert_text(const char* from, const char* to, const std::string& text,
                         std::string& result, bool strict = true) {
  const auto source = open_converter(from, strict), target = open_converter(to, strict);
  if (source.isNull() || target.isNull()) return false;
  std::u16string units(8 * text.size() + 64, u'\0');
  if (U_FAILURE(convert(ucnv_toUnicode, source.getAlias(), text, units))) return false;
  result.assign(16 * units.size() + 64, '\0');
  return U_SUCCESS(convert(ucnv_fromUnicode, target.getAlias(), units, result));
}

// ICU 72 reads SCSU wrongly when a chunk is full just before a window is defined.
inline bool is_read_alike_in_chunks(std::string_view charset) {
  return !charset.starts_with("SCSU");
}

// ICU writes SCSU and LMBCS in a form that depends on how much of the text a call sees. It also
// writes characters of LMBCS that it cannot read again; they are left out on both sides.
inline bool is_same_text(std::string left, std::string right, const std::string& charset) {
  if (charset.starts_with("SCSU") || charset.starts_with("LMBCS")) {
    convert_text(charset.c_str(), "UTF-8", left, left, false);
    convert_text(charset.c_str(), "UTF-8", right, right, false);
  }
  return left == right;
}

// What mail allows, whatever the libraries think.
constexpr size_t longest_line = 76, longest_word = 75;

// Whether quoted-printable need not escape a byte.
inline bool is_literal(char byte, bool header) {
  constexpr std::string_view escaped = " ?_=#$@[\\]^`{|}~";
  return ' ' <= byte && byte <= '~' && escaped.substr(header ? 0 : 3).find(byte) == escaped.npos;
}

// Joins digits, of so many bits each, to bytes; what is left of the last digit must be zero.
inline std::string join_digits(std::string_view text, std::string_view digits,
                               unsigned digit_bits) {
  std::string bytes;
  unsigned bits = 0, spare = 0;
  for (const char digit : text) {
    const size_t value = digits.find(digit);
    check(value != digits.npos, "only digits of the encoding");
    bits = bits << digit_bits | static_cast<unsigned>(value);
    spare += digit_bits;
    if (spare < 8) continue;
    spare -= 8;
    bytes += static_cast<char>(bits >> spare);
  }
  check((bits & ((1u << spare) - 1)) == 0, "spare bits are zero");
  return bytes;
}

// is_literal_byte says of a byte other than '=' whether it may stand for itself.
template <class IsLiteral>
std::string decode_qp(std::string_view text, IsLiteral is_literal_byte) {
  std::string bytes;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool is_escape = text[i] == '=';
    check(is_escape ? text.size() - i > 2 : is_literal_byte(text[i]), "escapes are whole");
    bytes +=
        is_escape ? join_digits(text.substr(i + 1, 2), "0123456789ABCDEF", 4) : text.substr(i, 1);
    if (is_escape) i += 2;
  }
  return bytes;
}

inline std::string decode_base64(std::string_view text) {
  const std::string_view padless = text.substr(0, text.find_last_not_of('=') + 1);
  check(text.size() % 4 == 0 && text.size() - padless.size() < 3, "base64 comes in whole groups");
  return join_digits(padless, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/",
                     6);
}

// Decodes a body, or with a charset name a header's words. encoding is 'Q' or 'B'.
inline std::string decode(std::string_view text, char encoding, std::string_view charset = {},
                          bool with_long_words = false) {
  const bool header = !charset.empty();
  const std::string_view line_break = header ? "\r\n\t" : "\r\n";
  std::string prefix, bytes;
  if (header) prefix.append("=?").append(charset).append({'?', encoding, '?'});
  for (bool last = false; !last;) {
    std::string_view line = text.substr(0, text.find(line_break));
    last = line.size() == text.size();
    if (!last) text.remove_prefix(line.size() + line_break.size());
    const std::string_view suffix = header ? "?=" : encoding == 'Q' && !last ? "=" : "";
    const size_t longest = header ? longest_word : longest_line;
    check(with_long_words || line.size() <= longest, "a line is not too long");
    check(line.starts_with(prefix) && line.ends_with(suffix), "a line is marked as it must be");
    line.remove_prefix(prefix.size());
    line.remove_suffix(suffix.size());
    check(!last || !line.ends_with(' '), "no blank is the last byte");
    check(header || last || encoding == 'Q' || !line.ends_with('='), "padding comes last");
    const auto is_literal_here = [header](char byte) { return is_literal(byte, header); };
    bytes += encoding == 'Q' ? decode_qp(line, is_literal_here) : decode_base64(line);
  }
  return bytes;
}

// Fields from the front of an input, then a text from what is left. The first two say what becomes
// of the text; the next two are the charsets, in every target.
class Input {
 public:
  Input(const std::uint8_t* data, size_t size)
      : bytes_(data, data + size), form_(number(3)), repeats_(number(256)) {
    messages.clear();
    failed_checks = 0;
  }

  unsigned number(unsigned limit) {
    const unsigned value = bytes_.empty() ? 0 : static_cast<unsigned char>(bytes_.front());
    bytes_.erase(0, 1);
    return value % limit;
  }

  // A charset, or an odd name: aliases, names that leave a word little room or none, one
  // that does not open, null.
  const char* charset(bool with_odd_names) {
    static const char* const odd_names[] = {
        "ISO-2022-JP",
        "shift_jis",
        "UTF-8,x=yyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyy",
        "UTF-8,x=yyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyy",
        "odd",
        nullptr};
    constexpr unsigned listed = std::size(charsets);
    const unsigned index = number(with_odd_names ? 256 : listed);
    seen_charsets[index] = 1;
    return index < listed ? charsets[index] : odd_names[(index - listed) % std::size(odd_names)];
  }

  // Bytes as they come; or taken as UTF-8 and converted to `from`, without what that lacks, or what
  // `to` lacks as well. Repeats let a short input fill many chunks.
  std::string text(const char* from, const char* to, unsigned most = 16) {
    if (form_ == 2) convert_text("UTF-8", to, bytes_, bytes_, false);
    if (form_ != 0) convert_text(form_ == 2 ? to : "UTF-8", from, bytes_, bytes_, false);
    std::string repeated = bytes_;
    for (unsigned i = 0; i < repeats_ % most; ++i) repeated += bytes_;
    return repeated;
  }

 private:
  std::string bytes_;
  unsigned form_, repeats_;
};

}  // namespace fuzz

// These take the place of the kernel services' own.
[[gnu::used]] inline int imsg_print(int, const void*, int index, ...) {
  std::va_list args;
  va_start(args, index);
  va_arg(args, const char*);
  fuzz::messages.push_back(index == 1 || index == 3 ? va_arg(args, int) : 0);
  va_end(args);
  return 0;
}

[[gnu::used]] inline void pfm_assert_fail(const char*, const char*, int) { ++fuzz::failed_checks; }
