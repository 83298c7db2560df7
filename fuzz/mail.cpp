// Fields and parts of mails, with any arguments: what is made is a well-formed mail that reads as
// the text that went in, and a failure has a reason. Inputs are readable: a letter for the
// function, one for how often the text is repeated, then lines with a name, an address, the charset
// and the mail charset (empty for null), then the text. With m the text is typed addresses for a
// whole mail, the name is its subject, its text and that of a file, the address a media type.
#include <qorvii18n/i18n_mail.h>

#include <algorithm>
#include <memory>
#include <optional>

#include <unicode/brkiter.h>
#include <unicode/unistr.h>

#include "fuzz.h"

using fuzz::check;

namespace {

using Text = std::string_view;

bool is_shown(char c) { return ' ' <= c && c <= '~'; }

// Null when it cannot be converted.
std::optional<std::string> convert(const std::string& from, const std::string& to,
                                   std::string text) {
  const bool done = fuzz::convert_text(from.c_str(), to.c_str(), text, text);
  return done ? std::optional(text) : std::nullopt;
}

std::string decode_q(Text text) { return fuzz::decode_qp(text, is_shown); }

std::vector<Text> split(Text text, Text separator) {
  std::vector<Text> parts;
  for (size_t end; (end = text.find(separator)) != text.npos;) {
    parts.push_back(text.substr(0, end));
    text.remove_prefix(end + separator.size());
  }
  parts.push_back(text);
  return parts;
}

// A word ends inside of a cluster only when its first one has no room even in a Q word.
void check_cut(Text word, Text next) {
  constexpr size_t longest_in_q = 21;  // bytes, three columns each
  UErrorCode status = U_ZERO_ERROR;
  static const std::unique_ptr<icu::BreakIterator> clusters(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  const auto units = icu::UnicodeString::fromUTF8(std::string(word) + std::string(next));
  const int32_t cut = icu::UnicodeString::fromUTF8(std::string(word)).length();
  clusters->setText(units);
  if (clusters->isBoundary(cut)) return;
  clusters->first();
  std::string first;
  units.tempSubString(0, clusters->next()).toUTF8String(first);
  check(first.size() > longest_in_q, "clusters stay together");
}

// Words and their gaps, as RFC 2047 has them. A fold stands as a line feed in front of its blank.
std::string decode_words(Text value) {
  std::string text, last_word;
  bool was_encoded = false, was_padded = false;
  std::vector<Text> words = split(value, " ");
  for (size_t i = 0; i < words.size(); ++i) {
    Text word = words[i];
    const bool folds = word.ends_with('\n');
    if (folds) word.remove_suffix(1);
    const std::vector<Text> fields = split(word, "?");
    const bool is_encoded = word.starts_with("=?");
    check(is_encoded || word.find("=?") == word.npos, "plain words do not look encoded");
    check(!(was_encoded && !is_encoded && i > 0 && words[i - 1].ends_with('\n')),
          "no fold between an encoded word and a plain one");
    if (i > 0 && !(was_encoded && is_encoded)) text += ' ';
    if (is_encoded) {
      check(fields.size() == 5 && fields[0] == "=" && fields[4] == "=", "words have five parts");
      check(word.size() <= fuzz::longest_word, "words are not too long");
      const bool is_b = fields[2] == "B";
      check(is_b || fields[2] == "Q", "an encoding is Q or B");
      check(!(is_b && was_padded), "no padded B word in front of another");
      const auto decoded = convert(std::string(fields[1]), "UTF-8",
                                   is_b ? fuzz::decode_base64(fields[3]) : decode_q(fields[3]));
      check(decoded && !decoded->empty(), "each word decodes alone");
      // Beside a long field name, the first word has little room.
      if (was_encoded && i > 1 && fields[1] == "UTF-8") check_cut(last_word, *decoded);
      text += *decoded;
      last_word = *decoded;
    } else {
      text += word;
    }
    was_padded = is_encoded && fields[2] == "B" && fields[3].ends_with('=');
    was_encoded = is_encoded;
  }
  return text;
}

// A field's value with a line feed for the line end of each fold.
std::string unfold(Text field, const std::string& name, bool with_utf8 = false) {
  check(field.starts_with(name + ": "), "the field has its name");
  std::string unfolded;
  const std::vector<Text> lines = split(field, "\r\n");
  for (size_t i = 0; i < lines.size(); ++i) {
    Text line = lines[i];
    for (const char c : line) {
      check(is_shown(c) || (with_utf8 && (c & 0x80) != 0), "lines are ASCII, without controls");
    }
    const size_t columns = line.size();
    line.remove_prefix(i == 0 ? name.size() + 2 : 0);
    check(i == 0 || (line.starts_with(' ') && line.size() > 1 && line[1] != ' '), "a fold");
    check(lines.size() == 1 || !line.empty(), "no fold after the colon");
    if (columns > fuzz::longest_line) {
      const Text token = line.substr(i == 0 ? 0 : 1);
      check(columns <= 998 && token.find(' ') == token.npos, "only single words are too long");
      check(!token.starts_with("=?") || (i == 0 && name.size() > 30), "encoded words are not");
    }
    unfolded.append(i == 0 ? "" : "\n").append(line);
  }
  return unfolded;
}

// Owns a string or block of the library's.
template <class Type>
using Owned = std::unique_ptr<Type, decltype(&i18n_mail_free)>;
Owned<char> own(char* result) { return {result, i18n_mail_free}; }

// Two equal items, as the library reads them.
void check_addresses(const std::string& field, const std::string& name, const std::string& text,
                     const std::string& passed, bool with_utf8) {
  unfold(field, name, with_utf8);
  const Text list = Text(field).substr(name.size() + 2);
  i18n_mail_error_t error;
  size_t count = 0;
  const Owned<i18n_mail_address_t> items(
      i18n_mail_parse_addresses(list.data(), list.size(), nullptr, &count, &error), i18n_mail_free);
  check(count == 2, "two items");
  for (const i18n_mail_address_t& item : {items.get()[0], items.get()[1]}) {
    const Text phrase(item.name, item.length), address = item.address;
    check(phrase == text || decode_words(phrase) == text, "a name is the text");
    const size_t at = address.rfind('@');
    check(address.substr(0, at) == passed.substr(0, passed.rfind('@')), "a local part is kept");
    check(address.substr(at).find_first_of(" <>,;()\"\\\n") == address.npos, "a domain");
    check(address.size() <= 254 && address[0] != '-' && address.find("=?") == address.npos,
          "address");
  }
}

void check_parameter(const std::string& result, const std::string& name, const std::string& text) {
  std::string value;
  const std::vector<Text> lines = split(result, "\r\n");
  check(lines.size() > 1 && lines[0] == ";", "a parameter begins with its separator");
  for (size_t i = 1; i < lines.size(); ++i) {
    const bool is_last = i + 1 == lines.size();
    check(lines[i].size() < fuzz::longest_line + (is_last ? 0 : 1),
          "a line has room for a separator");
    check(lines[i].starts_with(' ' + name), "a parameter has its name");
    std::string line(
        lines[i].substr(1 + name.size(), lines[i].size() - name.size() - (is_last ? 1 : 2)));
    const std::string section = line.substr(0, line.find('=') + 1);
    line.erase(0, section.size());
    if (section == "=") {
      value = line.starts_with('"') ? line.substr(1, line.size() - 2) : line;
      check(value.find_first_of("\"\\") == value.npos, "quoted strings have no quoted pairs");
      continue;
    }
    check(section == (lines.size() == 2 ? "*=" : '*' + std::to_string(i - 1) + "*="), "a section");
    check(i > 1 || line.starts_with("UTF-8''"), "a charset");
    line.erase(0, i == 1 ? 7 : 0);
    std::replace(line.begin(), line.end(), '%', '=');
    check(convert("UTF-8", "UTF-8", decode_q(line)).has_value(), "sections are whole");
    value += decode_q(line);
  }
  check(value == text, "a parameter is the text");
}

std::string end_lines(const std::string& text) {
  std::string lines;
  for (size_t i = 0; i < text.size(); ++i) {
    lines += text[i] == '\r' || text[i] == '\n' ? "\r\n" : std::string(1, text[i]);
    i += text[i] == '\r' && text[i + 1] == '\n' ? 1 : 0;
  }
  return lines.empty() || lines.ends_with("\r\n") ? lines : lines + "\r\n";
}

std::string decode_body(Text encoding, Text body, bool with_escapes) {
  std::string bytes;
  check(body.empty() || body.ends_with("\r\n"), "bodies end with a line end");
  if (body.empty()) return bytes;
  body.remove_suffix(2);
  for (Text line : split(body, "\r\n")) {
    check(line.size() <= fuzz::longest_line, "lines are not too long");
    if (encoding == "base64") {
      bytes += line;
      continue;
    }
    check(!line.ends_with(' ') && !line.ends_with('\t'), "lines do not end in blanks");
    check(!line.starts_with("From ") && !line.starts_with('.') && !line.starts_with("--"),
          "lines begin with no mark");
    for (const char c : line) {
      const bool is_allowed = c == '\t' || (with_escapes && c == '\x1B');
      check(is_shown(c) || (is_allowed && encoding == "7bit"), "a control");
    }
    const bool is_soft = encoding != "7bit" && line.ends_with('=');
    if (is_soft) line.remove_suffix(1);
    bytes += encoding == "7bit" ? std::string(line) : decode_q(line);
    bytes += is_soft ? "" : "\r\n";
  }
  return encoding == "base64" ? fuzz::decode_base64(bytes) : bytes;
}

void check_part(const std::string& part, const std::string& type, const std::string& bytes,
                bool is_text) {
  const Text head = Text(part).substr(0, part.find("\r\n\r\n"));
  const Text body = Text(part).substr(head.size() + 4);
  const std::string mark = "\r\nContent-Transfer-Encoding: ";
  const size_t end = head.find(mark);
  const std::string begin = "Content-Type: " + type.substr(0, type.find_first_of(" ;"));
  check(head.starts_with(begin) && end != head.npos, "a part's head");
  const Text encoding = head.substr(end + mark.size());
  const size_t charset = head.find("charset=") + 8;
  const bool with_escapes = is_text && head.find("charset=ISO-2022-JP") != head.npos;
  const std::string decoded = decode_body(encoding, body, with_escapes);
  if (!is_text) {
    check(encoding == "base64" && decoded == bytes, "data");
    check(head.substr(begin.size()).starts_with(';') == (type.find(';') != type.npos), "a type");
    return;
  }
  check(encoding == "7bit" || encoding == "base64" || encoding == "quoted-printable", "encoding");
  const size_t base64_size = (decoded.size() + 2) / 3 * 4;
  check(body.size() <=
                base64_size + (base64_size + fuzz::longest_line - 1) / fuzz::longest_line * 2 ||
            encoding == "7bit",
        "shortest");
  const std::string from(head.substr(charset, head.find_first_of(";\r", charset) - charset));
  check(convert(from, "UTF-8", decoded) == end_lines(bytes), "a body is the text");
}

// The parts of a multipart, whose boundaries must all be its own.
std::vector<std::string> split_parts(const std::string& part) {
  const size_t head = part.find("\r\n\r\n") + 4;
  const size_t begin = part.find("boundary=\"") + 10;
  check(begin < head, "a boundary");
  const std::string delimiter = "\r\n--" + part.substr(begin, part.find('"', begin) - begin);
  const std::vector<Text> pieces = split(Text(part).substr(head - 2), delimiter);
  check(pieces.front().empty() && pieces.back() == "--\r\n", "a first and a last boundary");
  std::vector<std::string> parts;
  for (size_t i = 1; i + 1 < pieces.size(); ++i) {
    check(pieces[i].starts_with("\r\n"), "a boundary is a line");
    parts.emplace_back(pieces[i].substr(2));
  }
  return parts;
}

// A list that is read can be written, and what is made of it and the rest has as many parts as it
// should, in parts in parts.
void check_mail(const std::string& list, const std::string& text, const std::string& type,
                const char* charset) {
  i18n_mail_error_t error;
  size_t count = 7;
  const Owned<i18n_mail_address_t> items(
      i18n_mail_parse_addresses(list.data(), list.size(), charset, &count, &error), i18n_mail_free);
  check((items == nullptr) == (error.status != I18N_MAIL_OK), "a block or an error");
  check(items != nullptr || (count == 0 && error.position <= list.size()), "where a mistake is");
  for (size_t i = 0; i < count; ++i) {
    const auto field =
        own(i18n_mail_addresses_utf8("To", &items.get()[i], 1, nullptr, nullptr, &error));
    check(field != nullptr, "what is read is written");
    const auto ascii = own(i18n_mail_addresses("To", &items.get()[i], 1, nullptr, nullptr, &error));
    check(ascii != nullptr ? Text(ascii.get()) == field.get()
                           : error.status == I18N_MAIL_NEEDS_SMTPUTF8,
          "only UTF-8 is refused");
  }
  const auto first =
      own(i18n_mail_text("plain", text.data(), text.size(), nullptr, nullptr, nullptr));
  const auto file = own(i18n_mail_attachment(type.c_str(), text.data(), text.size(), nullptr,
                                             list.data(), list.size(), &error));
  const std::string hand = "X: y\r\n" + end_lines(list);
  const char* const parts[] = {first.get(), file.get(), hand.c_str()};
  const auto inner = own(i18n_mail_multipart("mixed", parts, 3, &error));
  if (inner == nullptr) {
    const bool has_all = first != nullptr && file != nullptr;
    check(error.status == I18N_MAIL_BAD_VALUE && (!has_all || error.item == 2), "a part is none");
    return;
  }
  const char* const both[] = {inner.get(), first.get(), inner.get()};
  const auto outer = own(i18n_mail_multipart("related; type=\"a/b\"", both, 3, &error));
  check(split_parts(inner.get()) == std::vector<std::string>(parts, parts + 3), "three parts");
  check(split_parts(outer.get()) == std::vector<std::string>(both, both + 3), "three around them");
}

// A value that is folded is the value.
void check_structured(const std::string& name, const std::string& value) {
  i18n_mail_error_t error;
  const auto field = own(i18n_mail_structured(name.c_str(), value.c_str(), &error));
  if (field == nullptr) return check(error.position <= value.size() + name.size(), "a position");
  std::string text = field.get();
  for (const Text line : split(text, "\r\n")) check(line.size() <= 998, "lines are short enough");
  for (size_t i; (i = text.find("\r\n")) != text.npos;) text.erase(i, 2);
  check(text == name + ": " + value, "unfolded it is what it was");
}

std::string take_line(std::string& input) {
  const size_t end = std::min(input.find('\n'), input.size());
  const std::string line = input.substr(0, end);
  input.erase(0, end + 1);
  return line.substr(0, line.find('\0'));
}

// Whether a call has to fail so, as far as that is plain to see.
bool is_reason(i18n_mail_status_t status, const std::string& charset,
               const std::string& mail_charset, const std::string& text) {
  const auto utf8 = convert(charset, "UTF-8", text);
  const auto written = utf8 ? convert("UTF-8", mail_charset, *utf8) : std::nullopt;
  const auto source = fuzz::open_converter(charset.c_str());
  if (status == I18N_MAIL_UNKNOWN_CHARSET) {
    return source.isNull() || ucnv_getType(source.getAlias()) == UCNV_COMPOUND_TEXT;
  }
  if (status == I18N_MAIL_INVALID_TEXT) return !utf8;
  if (status == I18N_MAIL_FORBIDDEN_CHARACTER) {
    for (const Text line_end : {"\u0085", "\u2028", "\u2029"}) {
      if (utf8->find(line_end) != utf8->npos) return true;
    }
    return utf8->find_first_of(Text("\0\n\v\f\r\x1C\x1D\x1E", 8)) != utf8->npos;
  }
  if (status == I18N_MAIL_LACKING_CHARACTER) {
    // Or some readers take it for another, which none does with UTF-8 and visible ASCII.
    return !written || convert(mail_charset, "UTF-8", *written) != utf8 ||
           (mail_charset != "UTF-8" && !std::all_of(utf8->begin(), utf8->end(), is_shown));
  }
  return status != I18N_MAIL_OK && status != I18N_MAIL_OUT_OF_MEMORY;
}

bool is_of_text(i18n_mail_status_t status) {
  return status == I18N_MAIL_INVALID_TEXT || status == I18N_MAIL_LACKING_CHARACTER ||
         status == I18N_MAIL_FORBIDDEN_CHARACTER;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
  std::string text(data, data + size);
  text.resize(std::max<size_t>(text.size(), 2), 'a');
  const char function = text[0];
  const int repeats = text[1] & 63;
  text.erase(0, 2);
  const std::string name = take_line(text), address = take_line(text);
  std::string charset = take_line(text), mail_charset = take_line(text);
  // Seeds are in UTF-8.
  if (const auto converted = convert("UTF-8", charset.empty() ? "UTF-8" : charset, text)) {
    text = *converted;
  }
  const std::string once = text;
  for (int i = 0; i < repeats; ++i) text += once;

  const char* const from = charset.empty() ? nullptr : charset.c_str();
  if (function == 'm') return check_mail(text, name, address, from), 0;
  if (function == 's') return check_structured(name, address), 0;
  const char* const to = mail_charset.empty() ? nullptr : mail_charset.c_str();
  i18n_mail_error_t error;
  const auto make = [&](Text piece) {
    const i18n_mail_address_t item = {piece.data(), piece.size(), address.c_str()};
    const i18n_mail_address_t items[2] = {item, item};
    error = {I18N_MAIL_BAD_NAME, 7, 7};
    return own(function == 'a' ? i18n_mail_addresses(name.c_str(), items, 2, from, to, &error)
               : function == 'u'
                   ? i18n_mail_addresses_utf8(name.c_str(), items, 2, from, to, &error)
               : function == 'p'
                   ? i18n_mail_parameter(name.c_str(), piece.data(), piece.size(), from, &error)
               : function == 't'
                   ? i18n_mail_text(name.c_str(), piece.data(), piece.size(), from, to, &error)
               : function == 'd'
                   ? i18n_mail_data(name.c_str(), piece.data(), piece.size(), &error)
                   : i18n_mail_header(name.c_str(), piece.data(), piece.size(), from, to, &error));
  };
  const auto result = make(text);
  if (charset.empty()) charset = "UTF-8";
  if (mail_charset.empty() || function == 'p') mail_charset = "UTF-8";
  if (result == nullptr) {
    check(is_reason(error.status, charset, mail_charset, text), "a failure has a reason");
    const bool is_of_address =
        error.status == I18N_MAIL_BAD_ADDRESS || error.status == I18N_MAIL_NEEDS_SMTPUTF8;
    const size_t longest = error.status == I18N_MAIL_BAD_NAME ? name.size()
                           : is_of_address                    ? address.size()
                                                              : text.size();
    check(error.item == 0 && error.position <= longest, "a failure lies in what was passed");
    if (charset == "UTF-8" && is_of_text(error.status)) {
      const i18n_mail_error_t whole = error;
      make(Text(text).substr(0, whole.position));
      check(error.status != whole.status, "what stands before the position does not fail so");
      size_t end = whole.position + 1;
      while (end < text.size() && end < whole.position + 4 && (text[end] & 0xC0) == 0x80) ++end;
      const Text beginning = Text(text).substr(0, end);
      make(beginning);
      // A body of ASCII alone is in no charset that could lack any.
      const bool can_succeed =
          function == 't' &&
          std::all_of(beginning.begin(), beginning.end(), [](char c) { return (c & 0x80) == 0; });
      check((error.status == whole.status && error.position == whole.position) || can_succeed,
            "the position");
    }
    return 0;
  }
  const std::string made = result.get();
  check(error.status == I18N_MAIL_OK && error.item == 0 && error.position == 0, "no error");
  if (function == 'd') return check_part(made, name, text, false), 0;
  const auto utf8 = convert(charset, "UTF-8", text);
  check(utf8.has_value(), "what is invalid is not written");
  if (function == 'a' || function == 'u') {
    check_addresses(made, name, *utf8, address, function == 'u');
  } else if (function == 'p') {
    check_parameter(made, name, *utf8);
  } else if (function == 't') {
    check_part(made, "text/" + name, *utf8, true);
  } else {
    check(decode_words(unfold(made, name)) == *utf8, "a field is the text");
  }
  return 0;
}
