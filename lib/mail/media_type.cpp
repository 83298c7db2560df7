#include "mail/media_type.h"

#include <algorithm>

#include "mail/call.h"
#include "mail/lines.h"
#include "mail/names.h"

namespace mail {

namespace {

// Beside the blank of a fold and the ';' that can follow.
constexpr size_t longest_parameter = longest_line - 2;

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  bool at_end() const { return index_ == text_.size(); }
  bool is_at(char c) const { return !at_end() && text_[index_] == c; }
  size_t index() const { return index_; }
  std::string_view since(size_t begin) const { return text_.substr(begin, index_ - begin); }

  void skip_blanks() {
    while (is_at(' ')) ++index_;
  }
  void take(char c) {
    if (!is_at(c)) fail_here();
    ++index_;
  }
  template <class IsOfKind>
  void take_name(size_t longest, IsOfKind is_of_kind) {
    const size_t begin = index_;
    for (; !at_end() && is_of_kind(text_[index_]); ++index_) {
      if (index_ - begin == longest) fail_here();
    }
    if (index_ == begin) fail_here();
  }
  // Readers disagree about backslashes, and some decode words wherever they find them.
  void take_quoted() {
    take('"');
    for (; !is_at('"'); ++index_) {
      const bool is_good = !at_end() && is_printable(text_[index_]) && text_[index_] != '\\';
      if (!is_good || text_.substr(index_).starts_with("=?")) fail_here();
    }
    take('"');
  }

 private:
  [[noreturn]] void fail_here() const { fail(I18N_MAIL_BAD_NAME, index_); }

  std::string_view text_;
  size_t index_ = 0;
};

char to_lower(char c) { return 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string_view get_attribute(std::string_view parameter) {
  return parameter.substr(0, parameter.find('='));
}

}  // namespace

bool is_same_name(std::string_view one, std::string_view other) {
  return std::ranges::equal(one, other, {}, to_lower, to_lower);
}

MediaType read_media_type(std::string_view text, TypeNames names, std::string_view own_parameter) {
  Reader reader(text);
  reader.take_name(longest_type_name, is_of_token);
  if (names == TypeNames::kTypeAndSubtype) {
    reader.take('/');
    reader.take_name(longest_type_name, is_of_token);
  }
  MediaType type = {reader.since(0), {}};
  while (!reader.at_end()) {
    reader.skip_blanks();
    reader.take(';');
    reader.skip_blanks();
    const size_t begin = reader.index();
    reader.take_name(longest_parameter_name, is_of_parameter_name);
    const std::string_view attribute = reader.since(begin);
    const auto is_taken = [attribute](std::string_view parameter) {
      return is_same_name(get_attribute(parameter), attribute);
    };
    if (is_taken(own_parameter) || std::ranges::any_of(type.parameters, is_taken)) {
      fail(I18N_MAIL_BAD_NAME, begin);
    }
    reader.take('=');
    const size_t value_begin = reader.index();
    const bool is_quoted = reader.is_at('"');
    if (is_quoted) {
      reader.take_quoted();
    } else {
      reader.take_name(longest_parameter, is_of_token);
    }
    std::string parameter(reader.since(begin));
    // Some readers look for the marks of an extended value in a token, but not within quotes.
    const bool needs_quotes = parameter.find_first_of("*'%") != parameter.npos && !is_quoted;
    const size_t longest = longest_parameter - (needs_quotes ? 2 : 0);
    if (parameter.size() > longest) fail(I18N_MAIL_BAD_NAME, begin + longest);
    if (needs_quotes) parameter.insert(value_begin - begin, 1, '"').push_back('"');
    type.parameters.push_back(std::move(parameter));
  }
  return type;
}

std::string make_content_type(std::string_view prefix, const MediaType& type,
                              std::string_view own_parameter) {
  Field field("Content-Type");
  field.text().append(prefix).append(type.name);
  std::vector<std::string> parameters = type.parameters;
  if (!own_parameter.empty()) parameters.emplace(parameters.begin(), own_parameter);
  for (const std::string& parameter : parameters) {
    const size_t semicolon = &parameter == &parameters.back() ? 0 : 1;
    field.text() += ';';
    field.separate(parameter.size() + semicolon);
    field.text() += parameter;
  }
  return std::move(field.text());
}

}  // namespace mail
